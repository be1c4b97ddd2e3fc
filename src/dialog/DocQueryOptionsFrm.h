#pragma once

#include <memory>

#include <QDialog>

#include <Vk_DocQuery/VkDocQueryData.h>

class QPushButton;

namespace Vk_DocQuery {

class DHelpButton;
class DStitch;
class Sheet;
class VkDocQueryCriteries;
class WindowFit;

/// The modal window in which the user states a search: the criteria panel, the buttons below it,
/// and the rules by which values travel between the panel and the record being edited.
///
/// The record is held by reference and edited in place: reading Record while the window is up
/// writes the panel into it. One object serves one run; after it the panel is gone.
class DocQueryOptionsFrm : public QDialog {
    Q_OBJECT

public:
    DocQueryOptionsFrm();
    ~DocQueryOptionsFrm() override;

    /// Ends an object, on any thread. One that is running ends its run like a cancel and goes when
    /// that is over.
    static void Release(std::unique_ptr<DocQueryOptionsFrm> aDialog);

    /// True if the search was confirmed. Failures are shown to the user and give false.
    bool Execute();
    /// Execute was called: nothing good is to be had from a second run.
    bool WasStarted() const { return Started; }
    std::shared_ptr<VkDocQueryData> Record();
    void SetRecord(std::shared_ptr<VkDocQueryData> aRecord);

protected:
    void resizeEvent(QResizeEvent *aEvent) override;
    void reject() override;

private:
    class FormerSearch;

    void LoadControls();
    void UnloadControls();
    void EnsureInitialized();
    void RefreshCaption();
    void SetCaption(QString aCaption);
    bool Validate();
    void SaveRecord(VkDocQueryData &aRecord, const QString &aFileName, bool &rOk);
    void SaveRecordAs();
    bool Run();
    void Form_Resize();
    QSize LeastSize() const;

    void theOK_Click();
    void theCancel_Click();
    void theLoad_Click();
    void theSave_Click();
    void theSaveAs_Click();

    bool OptionsOk = false;
    bool RecordAssigned = false;
    bool PanelInitialized = false;
    bool DialogFinished = false;
    bool Started = false;
    bool RecordShown = false;  // the last distribution went through, and the caption is that of it
    bool theIsRunning = false;
    std::unique_ptr<DocQueryOptionsFrm> theSelf;  ///< released while running
    std::shared_ptr<VkDocQueryData> theRecord;

    Sheet *theSheet = nullptr;
    WindowFit *theFit = nullptr;
    VkDocQueryCriteries *theData = nullptr;
    QWidget *theBottomFrame = nullptr;
    QPushButton *theLoad = nullptr;
    QPushButton *theSave = nullptr;
    QPushButton *theSaveAs = nullptr;
    DHelpButton *theHelp = nullptr;
    QPushButton *theOK = nullptr;
    QPushButton *theCancel = nullptr;
    DStitch *theBottomStitch = nullptr;
};

}  // namespace Vk_DocQuery
