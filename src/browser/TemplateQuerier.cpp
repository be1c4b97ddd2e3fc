#include <QApplication>
#include <QPointer>

#include <Vk_DocQuery/TemplateQuerier.h>

#include "browser/TemplateQuerierForm.h"
#include "foundation/Application.h"
#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "TemplateQuerier";

QWidget *Owner() {
    QWidget *modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

}  // namespace

void TemplateQuerier::Execute() try {
    EnsureApplication();
    EnsureEventLoops();
    // A host that destroys the owner while the window is up takes the window with it.
    const QPointer<TemplateQuerierForm> form(new TemplateQuerierForm(Owner()));
    form->Execute();
    delete form.data();
} catch (...) {
    RaiseErrorUp(theModule, "Execute");
}

}  // namespace Vk_DocQuery
