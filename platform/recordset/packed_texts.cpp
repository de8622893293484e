#include "packed_texts.h"

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "canonical_form.h"

namespace recordset {

using automation::String_View;

namespace {

constexpr std::size_t Step = 8; // units that are looked at together
constexpr std::size_t Short = 64;

bool Is_Plain(char16_t unit) {
    return unit >= u' ' && unit < 0x80 && unit != u'&' && unit != u'\'' && unit != u'<';
}

#ifdef __SSE2__
// Writes `Step` units as bytes; gives how many of them are plain before the first that is not.
std::size_t Plain_In_Step(const char16_t* at, char* target) {
    const auto units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const auto is = [units](short unit) { return _mm_cmpeq_epi16(units, _mm_set1_epi16(unit)); };
    const auto high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    const auto ascii = _mm_cmpeq_epi16(high, _mm_setzero_si128());
    const auto marks = _mm_or_si128(_mm_or_si128(is('&'), is('\'')), is('<'));
    const auto other = _mm_or_si128(marks, _mm_cmplt_epi16(units, _mm_set1_epi16(' ')));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(target), _mm_packus_epi16(units, units));
    const auto plain = static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(other, ascii)));
    return static_cast<std::size_t>(std::countr_one(plain)) / 2;
}
#else
std::size_t Plain_In_Step(const char16_t* at, char* target) {
    std::size_t count = 0;
    for (; count < Step && Is_Plain(at[count]); ++count)
        target[count] = static_cast<char>(at[count]);
    return count;
}
#endif

} // namespace

bool Packed_Texts::Take(String_View& rest) {
    Make_Room(2 * Short);
    place = store.Text_End() + static_cast<std::uint32_t>(used - buffer.data());
    value = used;
    Unit at = rest.data();
    const Unit end = at + rest.size();
    while (at) {
        at = Take_Plain(at, end);
        if (at == end)
            return false;
        if (*at == u'\'')
            break;
        at = *at == u'&' ? Take_Escape(at, end) : Take_Beyond_ASCII(at, end);
    }
    if (!at)
        return false;
    *used++ = '\0';
    rest.remove_prefix(static_cast<std::size_t>(at + 1 - rest.data()));
    return true;
}

// Leaves room for a byte.
Packed_Texts::Unit Packed_Texts::Take_Plain(Unit at, Unit end) {
    std::size_t taken = Step;
    while (taken == Step && static_cast<std::size_t>(end - at) >= Step) {
        Make_Room(Step + 1);
        taken = Plain_In_Step(at, used);
        at += taken;
        used += taken;
    }
    if (taken < Step)
        return at;
    Make_Room(Step + 1);
    for (; at != end && Is_Plain(*at); ++at)
        *used++ = static_cast<char>(*at);
    return at;
}

Packed_Texts::Unit Packed_Texts::Take_Escape(Unit at, Unit end) {
    const String_View rest(at, static_cast<std::size_t>(end - at));
    for (const auto& escape : canonical_form::Escapes)
        if (rest.starts_with(escape.Written)) {
            *used++ = static_cast<char>(escape.Unit);
            Make_Room(1);
            return at + escape.Written.size();
        }
    return nullptr;
}

// Null for what is no character of XML.
Packed_Texts::Unit Packed_Texts::Take_Beyond_ASCII(Unit at, Unit end) {
    const Unit behind = std::find_if(at, end, [](char16_t unit) { return unit < 0x80; });
    const String_View text(at, static_cast<std::size_t>(behind - at));
    const auto is_none = [](char16_t unit) { return unit >= 0xFFFE; };
    if (text.empty() || std::any_of(at, behind, is_none) || !automation::Is_Well_Formed(text))
        return nullptr;
    Flush();
    store.Append(automation::To_UTF8(text));
    return behind;
}

std::optional<std::string_view> Packed_Texts::Short_Value() const {
    if (!value || static_cast<std::size_t>(used - value) > Short)
        return std::nullopt;
    return std::string_view(value);
}

void Packed_Texts::Flush() {
    store.Append({buffer.data(), static_cast<std::size_t>(used - buffer.data())});
    used = buffer.data();
    value = nullptr;
}

} // namespace recordset
