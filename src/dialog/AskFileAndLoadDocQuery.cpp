#include "dialog/AskFileAndLoadDocQuery.h"

#include "foundation/mErrorHandling.h"
#include "windows/Boxes.h"
#include "windows/mFileOpenSaveDialog.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "miDocQuery";
}  // namespace

const QString theQueryFilesFilter = QStringLiteral("Файлы критериев поиска Норвика (*.qvk)|*.qvk");

std::shared_ptr<VkDocQueryData> AskFileAndLoadDocQuery(WId aHwnd) try {
    const QString path =
        AskFileNameForOpening(QStringLiteral("Открыть файл критериев поиска"), theQueryFilesFilter,
                              QString(), aHwnd, theOpeningFlags, QString());
    if (path.isEmpty()) return nullptr;

    auto record = std::make_shared<VkDocQueryData>();
    if (record->ReadFromXmlFile(path)) return record;
    ShowWarningBox(QStringLiteral("Ошибка открытия файла критериев поиска \"") + path +
                       QStringLiteral("\":\r\n") + record->LastError,
                   QStringLiteral("Ошибка"));
    return nullptr;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
