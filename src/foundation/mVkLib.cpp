#include "foundation/mVkLib.h"

#include "foundation/Accessor.h"

namespace Vk_DocQuery {

FilesLibrary &FilesLib() try {
    thread_local std::shared_ptr<FilesLibrary> slot;
    return Accessed(slot, QStringLiteral("Vk_Lib.FilesLibrary"));
} catch (...) {
    RaiseErrorUp("mVkLib", __func__);
}

}  // namespace Vk_DocQuery
