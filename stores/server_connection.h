// A session with a PostgreSQL server: how it is opened, and its socket. SOCI's backend for it is loaded when
// the first store asks for it. Failures are soci::soci_error, or Store_Error when the backend is not
// installed.
#pragma once

#include <chrono>

// Debian's SOCI is configured with Boost, which its headers need for binding Boost's own types only.
#include <soci/soci-config.h>
#undef SOCI_HAVE_BOOST
#include <soci/soci.h>

#include "location.h"

namespace stores {

// How long a server may take to be connected to, and to answer: connect_timeout of the URL, else 10 seconds;
// 0 stands for ever.
std::chrono::seconds Patience_For(const Location& location);

// The session talks UTF-8, waits for another program's locks half as long as for an answer, and prints
// nothing.
void Open_Server(soci::session& session, const Location& location);

// Whether the session has a connection that was not lost, as far as is known: it asks nobody.
bool Is_Connected(soci::session& session, const Location& location);

// The descriptor that the open session talks through.
int Socket_Of(soci::session& session, const Location& location);

} // namespace stores
