#include "dialog/DocQueryOptionsFrm.h"

#include <QCoreApplication>
#include <QDir>
#include <QPushButton>
#include <QThread>

#include "controls/AltKeys.h"
#include "controls/FocusInView.h"
#include "controls/HelpButton.h"
#include "controls/PictureButton.h"
#include "controls/Sheet.h"
#include "controls/Stitch.h"
#include "dialog/AskFileAndLoadDocQuery.h"
#include "foundation/Application.h"
#include "foundation/mVkLib.h"
#include "look/Colours.h"
#include "look/Fonts.h"
#include "look/Pictures.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/Boxes.h"
#include "windows/ErrorReport.h"
#include "windows/mFileOpenSaveDialog.h"
#include "windows/ModalRun.h"
#include "windows/Placement.h"
#include "windows/WindowFit.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "DocQueryOptionsFrm";
constexpr qsizetype theLongestNameInCaption = 100;

// Twips.
constexpr int theDesignWidth = 12315;
constexpr int theDesignHeight = 9735;
constexpr int theGapBetweenButtons = 180;  // in the narrowest window
constexpr Placement thePanelPlace{0, 0, theDesignWidth, 8880, Placement::Width | Placement::Height};
constexpr Placement theBottomPlace{0, 8880, theDesignWidth, 855, Placement::Width | Placement::Top};
// In the row at the bottom.
constexpr Placement theLoadPlace{180, 180, 1575, 495};
constexpr Placement theSavePlace{1800, 180, 1575, 495};
constexpr Placement theSaveAsPlace{3420, 180, 1695, 495};
constexpr Placement theHelpPlace{6300, 180, 1395, 495};
constexpr Placement theOkPlace{8865, 180, 1395, 495, Placement::Left};
constexpr Placement theCancelPlace{10440, 180, 1635, 495, Placement::Left};

const QString theTitle = QStringLiteral("Поиск документов");
const QString theHelpPage = QStringLiteral("../service/Program_setting.htm");
const QString theDefaultFileName = QStringLiteral("Query.qvk");

/// A file dialog opens where it was left last, unless it is told the folder. That of a relative
/// name is the one in which "Сохранить" would save.
QString OfferedName(const QString &aFileName) {
    return aFileName.isEmpty() ? theDefaultFileName : QDir::current().absoluteFilePath(aFileName);
}

}  // namespace

/// The search that the user is at. It comes back, to the last letter typed, if the one that is to
/// take its place cannot be shown.
class DocQueryOptionsFrm::FormerSearch {
public:
    explicit FormerSearch(DocQueryOptionsFrm &aDialog)
        : theDialog(aDialog),
          theDraft(aDialog.theData->TakeDraft()),
          theRecord(aDialog.theRecord),
          theWasShown(aDialog.RecordShown) {}
    ~FormerSearch() {
        if (!theDraft) return;
        theDialog.theRecord = theRecord;
        theDialog.RecordShown = theDialog.theData->PutBack(*theDraft) && theWasShown;
    }
    Q_DISABLE_COPY_MOVE(FormerSearch)

    void Drop() { theDraft.reset(); }

private:
    DocQueryOptionsFrm &theDialog;
    std::shared_ptr<VkDocQueryCriteries::Draft> theDraft;
    std::shared_ptr<VkDocQueryData> theRecord;
    bool theWasShown;
};

DocQueryOptionsFrm::DocQueryOptionsFrm() {
    setObjectName(QStringLiteral("DocQueryOptionsFrm"));
    setWindowTitle(theTitle);
    setWindowIcon(WindowIcon(QStringLiteral("dialog")));
    setFont(WindowFont());
    new FocusInView(*this);
    KeepColoursReadable(*this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
}

DocQueryOptionsFrm::~DocQueryOptionsFrm() = default;

bool DocQueryOptionsFrm::Execute() {
    if (theIsRunning) return false;  // asked again from inside its own event loop
    theIsRunning = true;
    Started = true;
    bool confirmed = false;
    try {
        confirmed = Run();
    } catch (...) {
        ReportErrorToUser(theModule, __func__);
    }
    DialogFinished = true;
    UnloadControls();
    theIsRunning = false;
    const auto released = std::move(theSelf);  // takes this object along
    return confirmed;
}

void DocQueryOptionsFrm::Release(std::unique_ptr<DocQueryOptionsFrm> aDialog) {
    if (!aDialog) return;
    if (!CanDestroyWindows()) {
        static_cast<void>(aDialog.release());
        return;
    }
    if (aDialog->thread() != QThread::currentThread()) {
        QMetaObject::invokeMethod(QCoreApplication::instance(), [dialog = aDialog.release()] {
            Release(std::unique_ptr<DocQueryOptionsFrm>(dialog));
        });
        return;
    }
    if (!aDialog->theIsRunning) return;
    DocQueryOptionsFrm &dialog = *aDialog;
    dialog.theSelf = std::move(aDialog);
    ModalRun::EndAllOf(dialog);
}

bool DocQueryOptionsFrm::Run() {
    EnsureInitialized();
    DialogFinished = false;
    if (!RecordAssigned) SetRecord(nullptr);
    OptionsOk = false;
    ModalRun run(*this);
    if (!theSelf) run.Exec();
    if (theSelf || run.IsEnded() || !OptionsOk) return false;
    theData->AssembleValuesTo(*theRecord);
    return true;
}

std::shared_ptr<VkDocQueryData> DocQueryOptionsFrm::Record() try {
    if (DialogFinished) return theRecord;
    EnsureInitialized();
    if (!theRecord) theRecord = std::make_shared<VkDocQueryData>();
    theData->AssembleValuesTo(*theRecord);
    return theRecord;
} catch (...) {
    RaiseErrorUp(theModule, "Get-Record");
}

void DocQueryOptionsFrm::SetRecord(std::shared_ptr<VkDocQueryData> aRecord) try {
    EnsureInitialized();
    RecordAssigned = true;
    RecordShown = false;
    theRecord = aRecord ? std::move(aRecord) : std::make_shared<VkDocQueryData>();
    theData->DistributeValues(*theRecord);
    RefreshCaption();
    RecordShown = true;
} catch (...) {
    RaiseErrorUp(theModule, "Set-Record");
}

void DocQueryOptionsFrm::EnsureInitialized() try {
    WatchForTheEnd();
    LoadControls();
    if (PanelInitialized) return;
    theData->Init();
    PanelInitialized = true;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void DocQueryOptionsFrm::RefreshCaption() try {
    if (!theRecord) theRecord = std::make_shared<VkDocQueryData>();
    QString name = theRecord->FileName;
    if (name.size() > theLongestNameInCaption) {
        QString head;
        QString tail;
        QString file;
        name = FilesLib().ShortenFilePath(name, head, tail, file);
    }
    SetCaption(name.isEmpty() ? theTitle : theTitle + QStringLiteral(" - [") + name + u']');
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

/// Qt takes "[*]" for the place of its mark of unsaved changes. It may come about with a bracket of
/// ours, so that the whole caption counts.
void DocQueryOptionsFrm::SetCaption(QString aCaption) {
    setWindowTitle(aCaption.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
}

bool DocQueryOptionsFrm::Validate() try {
    VkDocQueryData record;  // a rejected search leaves the caller's record alone
    theData->AssembleValuesTo(record);
    return record.Validate();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void DocQueryOptionsFrm::SaveRecord(VkDocQueryData &aRecord, const QString &aFileName,
                                    bool &rOk) try {
    rOk = aRecord.WriteToXmlFile(aFileName);
    if (rOk) return;
    ShowWarningBox(QStringLiteral("Ошибка сохранения файла критериев поиска \"") + aFileName +
                       QStringLiteral("\":\r\n") + aRecord.LastError,
                   QStringLiteral("Ошибка"));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void DocQueryOptionsFrm::SaveRecordAs() {
    const auto record = Record();
    const QString path =
        AskFileNameForSaving(QStringLiteral("Сохранить файл критериев поиска"), theQueryFilesFilter,
                             OfferedName(record->FileName), winId(), theSavingFlags, QString());
    if (path.isEmpty()) return;
    bool saved = false;
    SaveRecord(*record, path, saved);
    if (!saved) return;
    record->FileName = path;
    RefreshCaption();
}

void DocQueryOptionsFrm::theOK_Click() try {
    if (!theData->FinishInput() || !Validate()) return;
    if (!AskYesNo(
            QStringLiteral("Вы уверены, что ввели все критерии поиска и хотите выполнить поиск "
                           "документов?"),
            QStringLiteral("Норвик: Критерии поиска документов")))
        return;
    OptionsOk = isVisible();  // a program may close the window behind the question
    hide();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void DocQueryOptionsFrm::theCancel_Click() try { hide(); } catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void DocQueryOptionsFrm::theLoad_Click() try {
    auto record = AskFileAndLoadDocQuery(winId());
    if (!record) return;
    FormerSearch former(*this);
    SetRecord(std::move(record));
    former.Drop();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void DocQueryOptionsFrm::theSave_Click() try {
    if (!theData->FinishInput()) return;
    const auto record = Record();
    // Half of a record must not take the place of its file unasked.
    if (record->FileName.isEmpty() || !RecordShown) {
        SaveRecordAs();
        return;
    }
    bool saved = false;
    SaveRecord(*record, record->FileName, saved);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void DocQueryOptionsFrm::theSaveAs_Click() try {
    if (!theData->FinishInput()) return;
    SaveRecordAs();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void DocQueryOptionsFrm::reject() {
    theCancel_Click();
}

void DocQueryOptionsFrm::resizeEvent(QResizeEvent *aEvent) {
    QDialog::resizeEvent(aEvent);
    if (theSheet) theSheet->Place(rect());
}

void DocQueryOptionsFrm::Form_Resize() {
    if (!theData) return;
    const QSize growth =
        theSheet->Content()->size() - SizeFromTwips(theDesignWidth, theDesignHeight);
    theData->setGeometry(thePanelPlace.InPixels(growth));
    theBottomFrame->setGeometry(theBottomPlace.InPixels(growth));
    theBottomStitch->resize(theBottomFrame->width(), theBottomStitch->height());
    theOK->setGeometry(theOkPlace.InPixels(growth));
    theCancel->setGeometry(theCancelPlace.InPixels(growth));
}

/// The room of the tabs and of the buttons below them, which keep clear of one another.
QSize DocQueryOptionsFrm::LeastSize() const {
    const QSize tabs = theData->minimumSizeHint();
    const int free = theOkPlace.theLeft - (theHelpPlace.theLeft + theHelpPlace.theWidth);
    const QSize bottom =
        SizeFromTwips(theDesignWidth - free + theGapBetweenButtons, theBottomPlace.theHeight);
    return {std::max(tabs.width(), bottom.width()), tabs.height() + bottom.height()};
}

void DocQueryOptionsFrm::LoadControls() {
    if (theData) return;
    UnloadControls();  // what a failure on the way may have left
    theSheet = new Sheet(this);
    connect(theSheet, &Sheet::ContentResized, this, &DocQueryOptionsFrm::Form_Resize);
    theData = new VkDocQueryCriteries(theSheet->Content());
    theData->setObjectName(QStringLiteral("theData"));
    theBottomFrame = new QWidget(theSheet->Content());
    theBottomFrame->setObjectName(QStringLiteral("theBottomFrame"));
    theBottomStitch = new DStitch(theBottomFrame);
    theBottomStitch->setObjectName(QStringLiteral("theBottomStitch"));

    struct ButtonRow {
        QPushButton *&Element;
        QString Name;
        QString Caption;
        char16_t AltKey;
        int Picture;  // 0: none
        Placement Place;
        void (DocQueryOptionsFrm::*Handler)();
    };
    const ButtonRow rows[] = {
        {theLoad, QStringLiteral("theLoad"), QStringLiteral("Загрузить ..."), u'З', 0, theLoadPlace,
         &DocQueryOptionsFrm::theLoad_Click},
        {theSave, QStringLiteral("theSave"), QStringLiteral("Сохранить"), u'С', 0, theSavePlace,
         &DocQueryOptionsFrm::theSave_Click},
        {theSaveAs, QStringLiteral("theSaveAs"), QStringLiteral("Сохранить как ..."), u'А', 0,
         theSaveAsPlace, &DocQueryOptionsFrm::theSaveAs_Click},
        {theOK, QStringLiteral("theOK"), QStringLiteral("OK"), u'К', OkPicture, theOkPlace,
         &DocQueryOptionsFrm::theOK_Click},
        {theCancel, QStringLiteral("theCancel"), QStringLiteral("Отмена"), u'О', CancelPicture,
         theCancelPlace, &DocQueryOptionsFrm::theCancel_Click},
    };
    for (const ButtonRow &row : rows) {
        row.Element = row.Picture != 0 ? new DButton(row.Caption, row.Picture, theBottomFrame)
                                       : new QPushButton(row.Caption, theBottomFrame);
        row.Element->setObjectName(row.Name);
        row.Element->setGeometry(row.Place.InPixels());
        GiveAltKey(*row.Element, row.AltKey);
        connect(row.Element, &QPushButton::clicked, this, row.Handler);
    }
    theHelp = new DHelpButton(theHelpPage, theBottomFrame);
    theHelp->setObjectName(QStringLiteral("theHelp"));
    theHelp->setGeometry(theHelpPlace.InPixels());
    GiveAltKey(*theHelp, u'П', QStringLiteral("F1"));
    theOK->setDefault(true);

    setTabOrder(theSaveAs, theHelp);
    resize(SizeFromTwips(theDesignWidth, theDesignHeight));
    theSheet->SetLeast(LeastSize());
    theFit = new WindowFit(*this, LeastSize());
    theSheet->Place(rect());
}

void DocQueryOptionsFrm::UnloadControls() {
    delete theFit;
    theFit = nullptr;
    delete theSheet;  // with the panel and all the buttons
    theSheet = nullptr;
    theData = nullptr;
    theBottomFrame = nullptr;
}

}  // namespace Vk_DocQuery
