#include <QPointer>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>

#include "dialog/AskFileAndLoadDocQuery.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "foundation/Application.h"
#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "DocQueryTest";  // hosts know the class by its older name in the chain
}

DocQueryEditor::DocQueryEditor() try {
    EnsureApplication();
    theDialog = std::make_unique<DocQueryOptionsFrm>();
} catch (...) {
    RaiseErrorUp(theModule, "Class_Initialize");
}

DocQueryEditor::~DocQueryEditor() {
    DocQueryOptionsFrm::Release(std::move(theDialog));
}

std::shared_ptr<VkDocQueryData> DocQueryEditor::Record() try {
    EnsureApplication();
    return theDialog->Record();
} catch (...) {
    RaiseErrorUp(theModule, "Get-Record");
}

void DocQueryEditor::SetRecord(std::shared_ptr<VkDocQueryData> aRecord) try {
    EnsureApplication();
    theDialog->SetRecord(std::move(aRecord));
} catch (...) {
    RaiseErrorUp(theModule, "Set-Record");
}

/// The panel of a second run would be an empty one, and OK would empty the host's record by it.
bool DocQueryEditor::Execute() try {
    EnsureApplication();
    const QPointer<DocQueryOptionsFrm> dialog = theDialog.get();
    EnsureEventLoops();
    if (!dialog) return false;  // what was waiting has taken this object along
    if (dialog->WasStarted()) {
        throw Failure(
            InvalidArgument, QStringLiteral("DocQueryEditor"),
            QStringLiteral("Повторный показ окна критериев поиска невозможен: один объект "
                           "DocQueryEditor служит одному показу. Создайте новый объект."));
    }
    return dialog->Execute();
} catch (...) {
    RaiseErrorUp(theModule, "RunOptionsDialog");
}

std::shared_ptr<VkDocQueryData> DocQueryEditor::AskAndLoadQuery(WId aHwnd) try {
    EnsureApplication();
    EnsureEventLoops();
    return AskFileAndLoadDocQuery(aHwnd);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
