#pragma once

#include <iterator>

namespace Vk_DocQuery {

/// The upper half of code page windows-1251: the characters of the bytes 80 to FF. Byte 98 has none
/// and is read as the control character of that number, as other readers take it.
inline constexpr char16_t theWindows1251[] =
    u"ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏ"
    u"ђ‘’“”•–—\u0098™љ›њќћџ"
    u"\u00A0ЎўЈ¤Ґ¦§Ё©Є«¬\u00AD®Ї"
    u"°±Ііґµ¶·ё№є»јЅѕї"
    u"АБВГДЕЖЗИЙКЛМНОП"
    u"РСТУФХЦЧШЩЪЫЬЭЮЯ"
    u"абвгдежзийклмноп"
    u"рстуфхцчшщъыьэюя";
static_assert(std::size(theWindows1251) == 128 + 1);

}  // namespace Vk_DocQuery
