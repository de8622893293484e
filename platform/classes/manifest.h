// A module's manifest: what is registered of it, one file for each module.
//
//     # comment
//     Module = /opt/product/Nodes.so
//     Interface = 1
//     Class = ZEBdb.NODES {F7D2CA46-600A-4BA4-8FEB-D4E5C3004B20} Apartment
//
// UTF-8, lines that end with LF. Module is an absolute path, or begins with ./ or ../ and is then taken from
// the manifest's folder; Interface is the AUTOMATION_VERSION that it was built for; a Class has its
// programmatic identifier, its class identity and its threading model. Pure functions, callable from any
// thread.
#pragma once

#include <string>
#include <vector>

#include "automation/text.h"
#include "automation/unknown.h"
#include "shell/format_error.h"

namespace classes {

constexpr std::size_t Largest_Manifest = 65536;

struct Manifest_Class {
    automation::String Program_Identity;
    automation::Identity Class_Identity;
    std::string Threading_Model;
};

struct Manifest {
    std::string Module;
    std::uint32_t Interface = 0;
    std::vector<Manifest_Class> Classes;
};

// Format_Error without a file name.
Manifest Parse_Manifest(std::string_view bytes);
// Format_Error with line 0 when it cannot be said in a manifest, for instance a path with a line feed.
std::string Manifest_Text(const Manifest& manifest);

// {8-4-4-4-12}, in capitals.
std::string Identity_Text(const automation::Identity& identity);

} // namespace classes
