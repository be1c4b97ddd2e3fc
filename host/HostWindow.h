#pragma once

#include <memory>

#include <QMainWindow>

#include <Vk_DocQuery/VkDocQueryData.h>

class QListWidget;
class QPlainTextEdit;

/// The window of a program that embeds the library: it lets the user state a search and shows what
/// came of it, in words and as the text of the file.
class HostWindow : public QMainWindow {
    Q_OBJECT

public:
    HostWindow();
    ~HostWindow() override;

    /// The search that was stated last; null before the first.
    std::shared_ptr<Vk_DocQuery::VkDocQueryData> Record() const { return theRecord; }

private:
    void WatchScreens();
    void StayInSight();
    void MakeMenus();
    void MakeSurface();
    void StateSearch();
    void OpenCriteria();
    void BrowseForms();
    void Show(std::shared_ptr<Vk_DocQuery::VkDocQueryData> aRecord);

    std::shared_ptr<Vk_DocQuery::VkDocQueryData> theRecord;
    QListWidget *theWords = nullptr;
    QPlainTextEdit *theFileText = nullptr;
};
