// The modules that come with the program. They count where no manifest names another one for a class.
#pragma once

namespace host {

// Offers the classes of those that are there. Throws Start_Error when one may not be used.
void Offer_Bundled_Modules();

} // namespace host
