# The two everyday commands: `make run` and `make test`. They install what is
# missing on a Debian machine (as root), so nothing needs setting up first.
.PHONY: build run test clean fuzz bench dist screenshots

build:
	bash scripts/build.sh

run:
	bash scripts/run.sh

test:
	bash scripts/test.sh

clean:
	rm -rf build dist

fuzz:
	bash scripts/fuzz.sh

bench:
	bash scripts/bench.sh

dist:
	bash scripts/dist.sh

screenshots:
	bash scripts/screenshots.sh
