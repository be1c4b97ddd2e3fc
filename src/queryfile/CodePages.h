#pragma once

#include <iterator>

namespace Vk_DocQuery {

/// The upper halves of the one-byte character sets, besides windows-1251, in which a file may be
/// written: the characters of the bytes 80 to FF.

inline constexpr char16_t theKoi8R[] =
    u"─│┌┐└┘├┤┬┴┼▀▄█▌▐"
    u"░▒▓⌠■∙√≈≤≥\u00A0⌡°²·÷"
    u"═║╒ё╓╔╕╖╗╘╙╚╛╜╝╞"
    u"╟╠╡Ё╢╣╤╥╦╧╨╩╪╫╬©"
    u"юабцдефгхийклмно"
    u"пярстужвьызшэщчъ"
    u"ЮАБЦДЕФГХИЙКЛМНО"
    u"ПЯРСТУЖВЬЫЗШЭЩЧЪ";
static_assert(std::size(theKoi8R) == 128 + 1);

inline constexpr char16_t theKoi8U[] =
    u"─│┌┐└┘├┤┬┴┼▀▄█▌▐"
    u"░▒▓⌠■∙√≈≤≥\u00A0⌡°²·÷"
    u"═║╒ёє╔ії╗╘╙╚╛ґ╝╞"
    u"╟╠╡ЁЄ╣ІЇ╦╧╨╩╪Ґ╬©"
    u"юабцдефгхийклмно"
    u"пярстужвьызшэщчъ"
    u"ЮАБЦДЕФГХИЙКЛМНО"
    u"ПЯРСТУЖВЬЫЗШЭЩЧЪ";
static_assert(std::size(theKoi8U) == 128 + 1);

inline constexpr char16_t theCodePage866[] =
    u"АБВГДЕЖЗИЙКЛМНОП"
    u"РСТУФХЦЧШЩЪЫЬЭЮЯ"
    u"абвгдежзийклмноп"
    u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧"
    u"╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"рстуфхцчшщъыьэюя"
    u"ЁёЄєЇїЎў°∙·√№¤■\u00A0";
static_assert(std::size(theCodePage866) == 128 + 1);

inline constexpr char16_t theIso8859Part5[] =
    u"\u0080\u0081\u0082\u0083\u0084\u0085\u0086\u0087\u0088\u0089\u008A\u008B\u008C\u008D\u008E"
    u"\u008F"
    u"\u0090\u0091\u0092\u0093\u0094\u0095\u0096\u0097\u0098\u0099\u009A\u009B\u009C\u009D\u009E"
    u"\u009F"
    u"\u00A0ЁЂЃЄЅІЇЈЉЊЋЌ\u00ADЎЏ"
    u"АБВГДЕЖЗИЙКЛМНОП"
    u"РСТУФХЦЧШЩЪЫЬЭЮЯ"
    u"абвгдежзийклмноп"
    u"рстуфхцчшщъыьэюя"
    u"№ёђѓєѕіїјљњћќ§ўџ";
static_assert(std::size(theIso8859Part5) == 128 + 1);

inline constexpr char16_t theIso8859Part1[] =
    u"\u0080\u0081\u0082\u0083\u0084\u0085\u0086\u0087\u0088\u0089\u008A\u008B\u008C\u008D\u008E"
    u"\u008F"
    u"\u0090\u0091\u0092\u0093\u0094\u0095\u0096\u0097\u0098\u0099\u009A\u009B\u009C\u009D\u009E"
    u"\u009F"
    u"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯"
    u"°±²³´µ¶·¸¹º»¼½¾¿"
    u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏ"
    u"ÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
    u"àáâãäåæçèéêëìíîï"
    u"ðñòóôõö÷øùúûüýþÿ";
static_assert(std::size(theIso8859Part1) == 128 + 1);

/// A byte without a character is read as the control character of that number.
inline constexpr char16_t theWindows1252[] =
    u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F"
    u"\u0090‘’“”•–—˜™š›œ\u009DžŸ"
    u"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯"
    u"°±²³´µ¶·¸¹º»¼½¾¿"
    u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏ"
    u"ÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
    u"àáâãäåæçèéêëìíîï"
    u"ðñòóôõö÷øùúûüýþÿ";
static_assert(std::size(theWindows1252) == 128 + 1);

}  // namespace Vk_DocQuery
