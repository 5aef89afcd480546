// Who makes the program and where to find them. The About page's closing lines and the home
// page's download offer both take them from here, so the addresses can't drift apart.
#pragma once

namespace tamrix::maker {

inline constexpr const char* kRights = "Tamrix Utility 3.0 Pro - Tous droits réservés";
inline constexpr const char* kAuthor = "L'équipe Tamrix Utility";
inline constexpr const char* kWebSite = "http://www.tamrix.example";
inline constexpr const char* kMail = "contact@tamrix.example";
// The download that the home page offers lies on the web site, at this path.
inline constexpr const char* kDownloadPath = "/TamrixLibra.zip";

}  // namespace tamrix::maker
