#include "components.h"

namespace stores {

namespace {

using automation::Identity;

constexpr Identity SR_Class{0x918DADF0, 0xF1BD, 0x457F, {0xB9, 0x1F, 0x49, 0xC0, 0x1F, 0x40, 0x51, 0xFE}};
constexpr Identity NODES_Class{0xF7D2CA46, 0x600A, 0x4BA4, {0x8F, 0xEB, 0xD4, 0xE5, 0xC3, 0x00, 0x4B, 0x20}};
constexpr Identity DETAIL_Class{0x68B46DF2, 0x92F2, 0x4D62, {0xA1, 0x4A, 0x64, 0x76, 0x74, 0xAA, 0x1B, 0x68}};
constexpr Identity CONFIG_Class{0x239CE407, 0x086A, 0x4F04, {0xBB, 0x71, 0xB8, 0x36, 0xA3, 0x75, 0x7F, 0xB9}};
constexpr Identity UDNODES_Class{
    0x8BE8DC2D, 0x9DDC, 0x4FF3, {0x89, 0x03, 0xFF, 0x96, 0xE9, 0xA5, 0x5F, 0x85}};
constexpr Identity DELNODES_Class{
    0xC98C16A4, 0x5D12, 0x42B0, {0xB0, 0x52, 0x9E, 0xC7, 0xD9, 0x05, 0x15, 0xEF}};
constexpr Identity INSNODES_Class{
    0x7AD6DAC8, 0xDD51, 0x48F7, {0x92, 0xC9, 0xCB, 0x57, 0xDF, 0x99, 0x70, 0xD1}};
constexpr Identity Message_Box_Class{
    0xC8AB12E0, 0x12AB, 0x4B3F, {0x86, 0x7C, 0x12, 0xEB, 0x32, 0xA8, 0xEA, 0x2A}};
constexpr Identity Records_Class{
    0xB8EDE21D, 0x8F0A, 0x4555, {0xB7, 0x0C, 0xF4, 0x05, 0xC4, 0x35, 0xA0, 0x5D}};

const automation::Server_Class Served[] = {
    {interfaces::SR::Program_Identity.data(), SR_Class, Make_SR},
    {interfaces::NODES::Program_Identity.data(), NODES_Class, Make_NODES},
    {interfaces::DETAIL::Program_Identity.data(), DETAIL_Class, Make_DETAIL},
    {interfaces::CONFIG::Program_Identity.data(), CONFIG_Class, Make_CONFIG},
    {interfaces::UDNODES::Program_Identity.data(), UDNODES_Class, Make_UDNODES},
    {interfaces::DELNODES::Program_Identity.data(), DELNODES_Class, Make_DELNODES},
    {interfaces::INSNODES::Program_Identity.data(), INSNODES_Class, Make_INSNODES},
    {interfaces::Message_Box::Program_Identity.data(), Message_Box_Class, Make_Message_Box},
    {interfaces::Label_Checker::Program_Identity.data(), interfaces::Label_Checker::Class_Identity,
     Make_Label_Checker},
    {interfaces::Store_Keeper::Program_Identity.data(), interfaces::Store_Keeper::Class_Identity,
     Make_Store_Keeper},
    {interfaces::Store_Records::Program_Identity.data(), Records_Class, Make_Store_Records},
};

} // namespace

std::span<const automation::Server_Class> Classes() {
    return Served;
}

} // namespace stores
