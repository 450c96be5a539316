#pragma once
// Where the title row's links and the shop button lead: the product's own
// addresses, kept in this one place.

namespace ProductLinks {

inline constexpr char kHomePage[] = "https://orvane.com";
inline constexpr char kFacebookPage[] = "https://www.facebook.com/orvanekeyboards";
inline constexpr char kForum[] = "https://forum.orvane.com";
// The shop button opens the same forum site, over plain http.
inline constexpr char kStore[] = "http://forum.orvane.com";

}  // namespace ProductLinks
