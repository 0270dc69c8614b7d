// The gateway whose modems dial sites.
#pragma once

#include <string>

namespace velorn {

// Where the gateway with its two modems is reached.
struct Gateway {
    std::string address; // a name or an address; empty: there is none
    int port1 = 23;
    int port2 = 24;
};

} // namespace velorn
