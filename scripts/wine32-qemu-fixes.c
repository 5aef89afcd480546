/* Mends, inside the emulated i386 process, four things qemu-user gets wrong for 32-bit Wine: the
 * qemu 10 of bookworm-backports that the emulated route runs, and bookworm's own 7.2, which stands
 * in where the backport cannot be had. Qemu 10 still gets 2 and 4 wrong and, as 7.2 does, leaves 3
 * to the kernel; 1 is 7.2's alone (qemu 10 answers a clash with EEXIST as the kernel does, and the
 * mend gives that same answer there).
 * Built with gcc -m32 into the private i386 root and handed to the guest only, through qemu's -E
 * LD_PRELOAD=..., never through the shell: the 64-bit qemu itself must not try to load it.
 *
 * 1. qemu 7.2 takes MAP_FIXED_NOREPLACE as a mere hint. Wine reserves its address space with it
 *    and, seeing a mapping land elsewhere, retries with ever smaller pieces: tens of thousands of
 *    mmap calls, a minute per start. The kernel's answer to a clash is EEXIST; we give it.
 * 2. qemu leaves trapno at -1 in the signal context, and Wine's 32-bit fault handlers decide from
 *    trapno what happened (a page fault, a divide by zero...). We fill it from the signal and its
 *    code before Wine's handler reads it.
 * 3. A 32-bit Wine process starting another 32-bit process execs the i386 loader directly, which
 *    this kernel refuses (it runs no 32-bit code). Such an exec goes through qemu-i386 again, with
 *    the same root and the same fixes.
 * 4. qemu copies the host's sysinfo() into the guest's 32-bit fields as they are: on a 64-bit host
 *    memory counts come in bytes (mem_unit 1) and a machine of 25 GB is cut to its low 32 bits
 *    (3.5 GB), while /proc/meminfo still says 21 GB free. Wine's memory figures then put more free
 *    memory than there is memory, and its memory load comes out as a large negative number. A
 *    32-bit kernel counts in bigger units when bytes would not fit; we count in kilobytes, from
 *    /proc/meminfo, for sysinfo() and for sysconf's page counts (glibc reads those through its
 *    own sysinfo call, out of the preload's reach). */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/sysinfo.h>
#include <sys/ucontext.h>
#include <unistd.h>

#ifndef MAP_FIXED_NOREPLACE
#define MAP_FIXED_NOREPLACE 0x100000
#endif

/* ---- 1. MAP_FIXED_NOREPLACE ------------------------------------------------------------------ */

static void *noreplace_mmap(void *addr, size_t len, int prot, int flags, int fd, off_t pgoff)
{
    void *got = (void *)syscall(SYS_mmap2, addr, len, prot, flags & ~MAP_FIXED_NOREPLACE, fd, pgoff);
    if (got == MAP_FAILED || !(flags & MAP_FIXED_NOREPLACE) || got == addr)
        return got;
    syscall(SYS_munmap, got, len);
    errno = EEXIST;
    return MAP_FAILED;
}

void *mmap64(void *addr, size_t len, int prot, int flags, int fd, off64_t off)
{
    if (off & 4095) {
        errno = EINVAL;
        return MAP_FAILED;
    }
    return noreplace_mmap(addr, len, prot, flags, fd, (off_t)(off >> 12));
}

void *mmap(void *addr, size_t len, int prot, int flags, int fd, off_t off)
{
    return mmap64(addr, len, prot, flags, fd, (off64_t)(unsigned long)off);
}

/* ---- 2. trapno in the signal context ----------------------------------------------------------- */

#define FAULT_SIGNALS 32
static void (*wine_handlers[FAULT_SIGNALS])(int, siginfo_t *, void *);

/* The x86 exception numbers a real kernel would have left in trapno. */
static int trap_number(int sig, const siginfo_t *info)
{
    switch (sig) {
    case SIGSEGV:
        return info->si_code == SI_KERNEL ? 13 /* general protection */ : 14 /* page fault */;
    case SIGBUS:
        return 14;
    case SIGILL:
        return 6; /* invalid opcode */
    case SIGFPE:
        switch (info->si_code) {
        case FPE_INTDIV: return 0;  /* divide error */
        case FPE_INTOVF: return 4;  /* overflow */
        default:         return 16; /* x87 floating point error */
        }
    case SIGTRAP:
        return info->si_code == TRAP_TRACE ? 1 /* single step */ : 3 /* breakpoint */;
    }
    return -1;
}

static void fill_trapno(int sig, siginfo_t *info, void *context)
{
    ucontext_t *uc = context;
    if (uc && (int)uc->uc_mcontext.gregs[REG_TRAPNO] == -1)
        uc->uc_mcontext.gregs[REG_TRAPNO] = trap_number(sig, info);
    wine_handlers[sig](sig, info, context);
}

static int is_fault_signal(int sig)
{
    return sig == SIGSEGV || sig == SIGBUS || sig == SIGILL || sig == SIGFPE || sig == SIGTRAP;
}

int sigaction(int sig, const struct sigaction *act, struct sigaction *old)
{
    static int (*real)(int, const struct sigaction *, struct sigaction *);
    if (!real)
        real = dlsym(RTLD_NEXT, "sigaction");
    if (!act || !is_fault_signal(sig) || !(act->sa_flags & SA_SIGINFO)) {
        int r = real(sig, act, old);
        if (r == 0 && old && is_fault_signal(sig) && old->sa_sigaction == fill_trapno)
            old->sa_sigaction = wine_handlers[sig];
        return r;
    }
    struct sigaction ours = *act;
    void (*previous)(int, siginfo_t *, void *) = wine_handlers[sig];
    wine_handlers[sig] = act->sa_sigaction;
    ours.sa_sigaction = fill_trapno;
    int r = real(sig, &ours, old);
    if (r == 0 && old && old->sa_sigaction == fill_trapno)
        old->sa_sigaction = previous;
    return r;
}

/* ---- 3. exec of a 32-bit program --------------------------------------------------------------- */

static int is_i386_elf(const char *path)
{
    Elf32_Ehdr h;
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return 0;
    ssize_t n = read(fd, &h, sizeof h);
    close(fd);
    return n == (ssize_t)sizeof h && memcmp(h.e_ident, ELFMAG, SELFMAG) == 0 &&
           h.e_ident[EI_CLASS] == ELFCLASS32 && h.e_machine == EM_386;
}

int execve(const char *path, char *const argv[], char *const envp[])
{
    const char *qemu = getenv("TAMRIX_QEMU_I386");
    const char *root = getenv("TAMRIX_I386_ROOT");
    const char *preload = getenv("LD_PRELOAD");
    char rooted[4096];
    const char *target = path;

    /* qemu's -L finds the root's files for the guest, not for the kernel: look there too. */
    if (root && path[0] == '/' && access(path, F_OK) != 0 &&
        snprintf(rooted, sizeof rooted, "%s%s", root, path) < (int)sizeof rooted && access(rooted, F_OK) == 0)
        target = rooted;

    size_t argc = 0, envc = 0;
    while (argv[argc])
        argc++;
    while (envp && envp[envc])
        envc++;

    /* Our LD_PRELOAD is for the guest alone: a 64-bit program (wineserver, wine64) would only warn
     * that it cannot load it, and qemu gets it back through -E below. */
    char **env = calloc(envc + 1, sizeof *env);
    if (!env) {
        errno = ENOMEM;
        return -1;
    }
    size_t e = 0;
    for (size_t i = 0; i < envc; i++)
        if (strncmp(envp[i], "LD_PRELOAD=", 11) != 0)
            env[e++] = envp[i];
    env[e] = NULL;

    if (!qemu || !root || !is_i386_elf(target))
        return (int)syscall(SYS_execve, target, argv, env);

    char opt_root[4200], opt_preload[4200];
    snprintf(opt_root, sizeof opt_root, "TAMRIX_I386_ROOT=%s", root);
    snprintf(opt_preload, sizeof opt_preload, "LD_PRELOAD=%s", preload ? preload : "");
    char **args = calloc(argc + 16, sizeof *args);
    if (!args) {
        errno = ENOMEM;
        return -1;
    }
    size_t a = 0;
    args[a++] = (char *)qemu;
    args[a++] = "-L";
    args[a++] = (char *)root;
    if (preload) {
        args[a++] = "-E";
        args[a++] = opt_preload;
    }
    args[a++] = "-E";
    args[a++] = "WINELOADERNOEXEC=1";
    if (argc) {
        args[a++] = "-0";
        args[a++] = argv[0];
    }
    args[a++] = (char *)target;
    for (size_t i = 1; i < argc; i++)
        args[a++] = argv[i];
    args[a] = NULL;
    return (int)syscall(SYS_execve, qemu, args, env);
}

int execv(const char *path, char *const argv[])
{
    extern char **environ;
    return execve(path, argv, environ);
}

/* ---- 4. memory counts that fit 32 bits --------------------------------------------------------- */

/* MemTotal and the others of /proc/meminfo, in kilobytes; 0 when the file cannot be read. */
static int meminfo_kb(unsigned long long *total, unsigned long long *free_kb, unsigned long long *buffers,
                      unsigned long long *shared, unsigned long long *swap_total, unsigned long long *swap_free,
                      unsigned long long *available)
{
    char line[256];
    FILE *f = fopen("/proc/meminfo", "re");
    if (!f)
        return 0;
    *total = *free_kb = *buffers = *shared = *swap_total = *swap_free = *available = 0;
    while (fgets(line, sizeof line, f)) {
        unsigned long long v;
        char key[64];
        if (sscanf(line, "%63[^:]: %llu", key, &v) != 2)
            continue;
        if (!strcmp(key, "MemTotal")) *total = v;
        else if (!strcmp(key, "MemFree")) *free_kb = v;
        else if (!strcmp(key, "Buffers")) *buffers = v;
        else if (!strcmp(key, "Shmem")) *shared = v;
        else if (!strcmp(key, "SwapTotal")) *swap_total = v;
        else if (!strcmp(key, "SwapFree")) *swap_free = v;
        else if (!strcmp(key, "MemAvailable")) *available = v;
    }
    fclose(f);
    return *total != 0;
}

static unsigned long clamp_ul(unsigned long long v)
{
    return v > 0xffffffffull ? 0xfffffffful : (unsigned long)v;
}

int sysinfo(struct sysinfo *info)
{
    if (syscall(SYS_sysinfo, info) != 0)
        return -1;
    unsigned long long total, free_kb, buffers, shared, swap_total, swap_free, available;
    if (!meminfo_kb(&total, &free_kb, &buffers, &shared, &swap_total, &swap_free, &available))
        return 0;
    info->mem_unit = 1024;
    info->totalram = clamp_ul(total);
    info->freeram = clamp_ul(free_kb);
    info->bufferram = clamp_ul(buffers);
    info->sharedram = clamp_ul(shared);
    info->totalswap = clamp_ul(swap_total);
    info->freeswap = clamp_ul(swap_free);
    info->totalhigh = info->freehigh = 0;
    return 0;
}

long sysconf(int name)
{
    static long (*real)(int);
    if (!real)
        real = (long (*)(int))dlsym(RTLD_NEXT, "sysconf");
    if (name == _SC_PHYS_PAGES || name == _SC_AVPHYS_PAGES) {
        unsigned long long total, free_kb, buffers, shared, swap_total, swap_free, available;
        long page = real(_SC_PAGESIZE);
        if (page > 0 && meminfo_kb(&total, &free_kb, &buffers, &shared, &swap_total, &swap_free, &available)) {
            unsigned long long pages = (name == _SC_PHYS_PAGES ? total : free_kb) * 1024ull / (unsigned long long)page;
            return pages > 0x7fffffffull ? 0x7fffffffL : (long)pages;
        }
    }
    return real(name);
}
