// The public interface of the style-node editor: the one class that a host sees.
//
// Create it by its programmatic identifier, call Shown, read the error properties when it answers False.
// Apartment-threaded: every call on an object comes on the thread that created it, and Shown blocks that
// thread while the dialog is up. No failure is raised to the host; the property members always succeed.
// Boolean is 16 bits, True -1 and False 0.
#pragma once

#include "automation/variant.h"

namespace style_node {

using automation::Integer;
using automation::Long;
using automation::Status;
using Boolean = std::int16_t;
constexpr Boolean True = -1;
constexpr Boolean False = 0;

// The name is the published one of the dual interface; the members stand in its order.
class _Busyness_Rules : public automation::Unknown { // NOLINT(bugprone-reserved-identifier)
public:
    static constexpr automation::String_View Program_Identity = u"KOR_STYLE_Node.Busyness_Rules";
    static constexpr automation::Identity Class_Identity{
        0x9AD9B9A2, 0x5E78, 0x454D, {0xB0, 0x65, 0xA1, 0xC2, 0x84, 0xCC, 0x45, 0x49}};
    static constexpr automation::Identity Interface_Identity{
        0x99356597, 0x6FBA, 0x4662, {0xB6, 0xA7, 0x30, 0xB7, 0xB1, 0x2E, 0x9E, 0xED}};

    // The last recorded error: "[source][object]procedure", its number, its text. An empty description
    // means that no error has been recorded since Shown began.
    virtual Status Get_ErrLocation(automation::Variant& Result) = 0;
    virtual Status Get_ErrCode(Long& Result) = 0;
    virtual Status Get_ErrDescription(automation::Variant& Result) = 0;
    // Whether the node last shown is of supervised type Blind.
    virtual Status Get_SupervisedType_Blind(Boolean& Result) = 0;
    virtual Status Put_SupervisedType_Blind(Boolean& Given_Is_SupervisedType_Blind) = 0;
    // Whether Shown was called for node 0, the partition's default node.
    virtual Status Get_Editing_Default_Node(Boolean& Result) = 0;
    // Runs one editing job; Result is True when no error was recorded during it. Language_ID 1 is English;
    // Silent_Error suppresses the "Internal Error" box. A host that leaves the last two out passes 1, False.
    virtual Status Shown(Integer Config_ID, Integer Partition_ID, Integer Node_Number, Integer Language_ID,
                         Boolean Silent_Error, Boolean& Result) = 0;

protected:
    ~_Busyness_Rules() = default;
};

} // namespace style_node
