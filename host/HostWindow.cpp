#include "HostWindow.h"

#include <algorithm>

#include <QApplication>
#include <QBoxLayout>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "RecordInWords.h"

using namespace Vk_DocQuery;

namespace {

constexpr int theGapOfSentences = 2;
constexpr double theShareOfScreen = 0.9;  // at most, so that the frame has room too

/// Styles draw edges darker than the window; on black there would be none.
const QString theEdgesOnBlack = QStringLiteral(
    "QPushButton, QAbstractScrollArea, QMenu { border: 1px solid palette(mid); }"
    "QPushButton { padding: 4px 8px; }"
    "QPushButton:focus, QAbstractScrollArea:focus { border-color: palette(window-text); }"
    "QMenu::item:selected { background: palette(highlight); color: palette(highlighted-text); }");

/// The text of the .qvk file of the record.
QString FileTextOf(VkDocQueryData &aRecord) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Query.qvk")));
    if (!aRecord.WriteToXmlFile(file.fileName())) return aRecord.LastError;
    if (!file.open(QIODevice::ReadOnly)) return file.errorString();
    const QString text = QStringDecoder("windows-1251").decode(file.readAll());
    return QString(text).remove(u'\r');
}

/// A heading over one half of the window.
QWidget *Titled(const QString &aTitle, QWidget *aContent) {
    auto *half = new QWidget;
    auto *layout = new QVBoxLayout(half);
    auto *label = new QLabel(aTitle);
    label->setBuddy(aContent);
    aContent->setAccessibleName(aTitle);
    layout->addWidget(label);
    layout->addWidget(aContent);
    return half;
}

/// A path in the text may look like a tag.
void ShowFailure(QWidget *aOwner, const QString &aText) {
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Норвик"), aText, QMessageBox::Ok,
                    aOwner);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

/// Runs what a menu item does; a failure is shown, and the program goes on.
template <class Work>
void Guarded(QWidget *aOwner, Work aWork) {
    try {
        aWork();
    } catch (const Failure &failure) {
        ShowFailure(aOwner, failure.Description());
    } catch (const std::exception &failure) {
        ShowFailure(aOwner, QString::fromUtf8(failure.what()));
    }
}

}  // namespace

HostWindow::HostWindow() {
    setWindowTitle(QStringLiteral("Норвик"));
    MakeSurface();
    MakeMenus();
    resize(QSize(900, 600).boundedTo(screen()->availableSize() * theShareOfScreen));
    statusBar()->showMessage(QStringLiteral("Критерии поиска еще не заданы"));
    if (palette().color(QPalette::Window) == Qt::black) setStyleSheet(theEdgesOnBlack);
    WatchScreens();
}

HostWindow::~HostWindow() = default;

void HostWindow::WatchScreens() {
    const auto watch = [this](const QScreen *aScreen) {
        connect(aScreen, &QScreen::availableGeometryChanged, this, &HostWindow::StayInSight);
    };
    for (const QScreen *present : QGuiApplication::screens()) watch(present);
    connect(qApp, &QGuiApplication::screenAdded, this, watch);
}

/// A screen that gets smaller may leave a part of the window out of sight.
void HostWindow::StayInSight() {
    QRegion seen;
    for (const QScreen *present : QGuiApplication::screens()) seen += present->availableGeometry();
    if (isMaximized() || isFullScreen() || (QRegion(frameGeometry()) - seen).isEmpty()) return;
    const QRect room = screen()->availableGeometry();
    resize(size().boundedTo(room.size() - (frameGeometry().size() - size())));
    const QPoint most =
        room.bottomRight() - frameGeometry().bottomRight() + frameGeometry().topLeft();
    move(std::clamp(x(), room.left(), std::max(room.left(), most.x())),
         std::clamp(y(), room.top(), std::max(room.top(), most.y())));
}

void HostWindow::MakeMenus() {
    auto *file = menuBar()->addMenu(QStringLiteral("&Файл"));
    file->addAction(QStringLiteral("В&ыход"), QKeySequence(Qt::CTRL | Qt::Key_Q), this,
                    &QWidget::close);
    auto *documents = menuBar()->addMenu(QStringLiteral("&Документы"));
    documents->addAction(QStringLiteral("&Поиск документов ..."), QKeySequence(Qt::Key_F7), this,
                         &HostWindow::StateSearch);
    documents->addAction(QStringLiteral("&Открыть критерии ..."),
                         QKeySequence(Qt::CTRL | Qt::Key_O), this, &HostWindow::OpenCriteria);
    auto *forms = menuBar()->addMenu(QStringLiteral("&Отчетные формы"));
    forms->addAction(QStringLiteral("Поиск &бланков отчетных форм ..."), QKeySequence(Qt::Key_F8),
                     this, &HostWindow::BrowseForms);
}

void HostWindow::MakeSurface() {
    theWords = new QListWidget;
    theWords->setWordWrap(true);
    theWords->setSpacing(theGapOfSentences);
    theFileText = new QPlainTextEdit;
    theFileText->setReadOnly(true);
    theFileText->setLineWrapMode(QPlainTextEdit::NoWrap);
    theFileText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto *search = new QPushButton(QStringLiteral("Поиск документов ..."));
    connect(search, &QPushButton::clicked, this, &HostWindow::StateSearch);
    auto *open = new QPushButton(QStringLiteral("Открыть критерии ..."));
    connect(open, &QPushButton::clicked, this, &HostWindow::OpenCriteria);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(search);
    buttons->addWidget(open);
    buttons->addStretch();

    auto *halves = new QSplitter;
    halves->addWidget(Titled(QStringLiteral("Критерии поиска"), theWords));
    halves->addWidget(Titled(QStringLiteral("Файл критериев поиска"), theFileText));
    halves->setChildrenCollapsible(false);

    auto *surface = new QWidget;
    auto *layout = new QVBoxLayout(surface);
    layout->addLayout(buttons);
    layout->addWidget(halves, 1);
    setCentralWidget(surface);
}

void HostWindow::StateSearch() {
    Guarded(this, [this] {
        DocQueryEditor editor;
        editor.SetRecord(theRecord);
        if (editor.Execute()) {
            Show(editor.Record());
            statusBar()->showMessage(
                QStringLiteral("Критерии поиска заданы, поиск можно выполнять"));
        } else {
            if (theRecord) Show(theRecord);  // a save in the dialog writes into the record
            statusBar()->showMessage(QStringLiteral("Поиск отменен"));
        }
    });
}

void HostWindow::OpenCriteria() {
    Guarded(this, [this] {
        DocQueryEditor editor;
        if (const auto loaded = editor.AskAndLoadQuery(winId())) {
            Show(loaded);
            statusBar()->showMessage(QStringLiteral("Критерии поиска загружены из файла: ") +
                                     loaded->FileName);
        }
    });
}

void HostWindow::BrowseForms() {
    Guarded(this, [] { TemplateQuerier().Execute(); });
}

void HostWindow::Show(std::shared_ptr<VkDocQueryData> aRecord) {
    theRecord = std::move(aRecord);
    theWords->clear();
    theWords->addItems(RecordInWords(*theRecord));
    theFileText->setPlainText(FileTextOf(*theRecord));
}
