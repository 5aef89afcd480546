// The maker's web site: the one address the program ever opens, from the home page's download
// offer and from the About page. The domain is a reserved example domain, so that no real site
// answers for it.
#pragma once

#include <string>

namespace tamrix::maker {

inline constexpr const char* kWebSite = "http://www.tamrix.example";
inline constexpr const char* kMail = "contact@tamrix.example";
inline constexpr const char* kRights = "Tamrix Utility 3.0 Pro - Tous droits réservés";
inline constexpr const char* kAuthor = "L'équipe Tamrix Utility";

// Where the memory optimiser "Tamrix Libra" is offered for download.
inline constexpr const char* kLibraPath = "/TamrixLibra.zip";
inline std::string LibraDownload() { return std::string(kWebSite) + kLibraPath; }

}  // namespace tamrix::maker
