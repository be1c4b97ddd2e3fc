#pragma once

#include <cstddef>
#include <span>

namespace Vk_DocQuery {

/// Which list a picture belongs to.
enum class PictureGroup {
    Listed,      ///< of the picker's list, in its order
    SharedOnly,  ///< of the shared list alone
    Window,      ///< of the windows themselves: tabs, statuses, buttons, icons
};

/// A picture as the build compiled it from its vector sources.
struct CompiledPicture {
    using Bytes = std::span<const unsigned char>;

    const char *Key;
    PictureGroup Group;
    Bytes Icon;                    ///< 16 by 16, 8 bits per pixel, one icon
    std::span<const Bytes> Sharp;  ///< PNG for the finer screens, smallest first
};

/// What stands in the 16 by 16 form where the picture is transparent.
constexpr unsigned int theMaskColour = 0xC0C0C0;
constexpr std::size_t theIconSize = 1406;

/// All pictures in the order of the table that they are made from.
std::span<const CompiledPicture> CompiledPictures();

}  // namespace Vk_DocQuery
