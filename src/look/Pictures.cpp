#include "look/Pictures.h"

#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPixmap>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/PictureKeys.h>

#include "foundation/Application.h"
#include "look/CompiledPictures.h"
#include "look/mVkPics.h"

namespace Vk_DocQuery {

namespace {

using List = std::shared_ptr<ImageList>;

constexpr int theSide = 16;
// Parts of an icon of 16 by 16 pixels with 8 bits each: the directory and the header of the bitmap,
// the palette, the pixels and the mask, both from the bottom row up.
constexpr std::size_t thePaletteAt = 62;
constexpr std::size_t thePixelsAt = thePaletteAt + std::size_t{256} * 4;
constexpr std::size_t theMaskAt = thePixelsAt + std::size_t{theSide} * theSide;
constexpr std::size_t theMaskStride = 4;

QRgb PaletteColour(CompiledPicture::Bytes aIcon, std::size_t aIndex) {
    const auto entry = aIcon.subspan(thePaletteAt + aIndex * 4, 3);
    return qRgb(entry[2], entry[1], entry[0]);
}

QImage ImageOfIcon(CompiledPicture::Bytes aIcon) {
    QImage image(theSide, theSide, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < theSide; ++y) {
        const auto row = static_cast<std::size_t>(theSide - 1 - y);
        for (int x = 0; x < theSide; ++x) {
            const auto column = static_cast<std::size_t>(x);
            const unsigned int maskBits = aIcon[theMaskAt + row * theMaskStride + column / 8];
            const bool isMasked = (maskBits >> (7 - column % 8) & 1U) != 0;
            const QRgb colour = PaletteColour(aIcon, aIcon[thePixelsAt + row * theSide + column]);
            const bool isClear = isMasked || (colour & 0xFFFFFFU) == theMaskColour;
            image.setPixel(x, y, isClear ? qRgba(0, 0, 0, 0) : colour);
        }
    }
    return image;
}

QIcon AllForms(const CompiledPicture &aPicture) {
    QIcon icon(QPixmap::fromImage(ImageOfIcon(aPicture.Icon)));
    for (const CompiledPicture::Bytes bytes : aPicture.Sharp) {
        QPixmap pixmap;
        pixmap.loadFromData(bytes.data(), static_cast<uint>(bytes.size()), "PNG");
        icon.addPixmap(pixmap);
    }
    return icon;
}

/// Unpacks a picture when it is first shown: a window shows a handful out of two hundred, and
/// unpacking all of them takes longer than opening it.
class PictureEngine : public QIconEngine {
public:
    explicit PictureEngine(const CompiledPicture &aPicture) : thePicture(&aPicture) {}

    void paint(QPainter *aPainter, const QRect &aPlace, QIcon::Mode aMode,
               QIcon::State aState) override {
        Forms().paint(aPainter, aPlace, Qt::AlignCenter, aMode, aState);
    }
    QPixmap pixmap(const QSize &aSize, QIcon::Mode aMode, QIcon::State aState) override {
        return Forms().pixmap(aSize, 1.0, aMode, aState);
    }
    QPixmap scaledPixmap(const QSize &aSize, QIcon::Mode aMode, QIcon::State aState,
                         qreal /*aScale*/) override {
        return pixmap(aSize, aMode, aState);
    }
    QSize actualSize(const QSize &aSize, QIcon::Mode aMode, QIcon::State aState) override {
        return Forms().actualSize(aSize, aMode, aState);
    }
    QList<QSize> availableSizes(QIcon::Mode aMode, QIcon::State aState) override {
        return Forms().availableSizes(aMode, aState);
    }
    QIconEngine *clone() const override { return new PictureEngine(*this); }
    bool isNull() override { return false; }

private:
    const QIcon &Forms() {
        if (theForms.isNull()) theForms = AllForms(*thePicture);
        return theForms;
    }

    const CompiledPicture *thePicture;
    QIcon theForms;
};

/// All pictures of the build. It is never released: pictures must not outlive the application
/// object, and static ones would.
struct Store {
    QHash<QString, QIcon> Icons;
    List Panel;
    List Picker;
    List Tabs;
    List Shared;
};

/// The two kinds of stream that the panel's list came without.
bool IsPickerOnly(const QString &aKey) {
    return aKey == QStringLiteral("acc_stream_ofr") || aKey == QStringLiteral("acc_stream_rfm");
}

Store *MakeStore() {
    EnsureApplication();
    auto *store = new Store;
    const auto panel = std::make_shared<ImageList>();
    const auto picker = std::make_shared<ImageList>();
    const auto tabs = std::make_shared<ImageList>();
    const auto shared = std::make_shared<ImageList>();
    for (const CompiledPicture &picture : CompiledPictures()) {
        const QString key = QString::fromLatin1(picture.Key);
        const QIcon icon(new PictureEngine(picture));
        store->Icons.insert(key, icon);
        if (picture.Group == PictureGroup::Window) continue;
        shared->Add(key, icon);
        if (picture.Group == PictureGroup::SharedOnly) continue;
        picker->Add(key, icon);
        if (!IsPickerOnly(key)) panel->Add(key, icon);
    }
    for (const QString &key : {QStringLiteral("active"), QStringLiteral("passive")})
        tabs->Add(key, store->Icons.value(QStringLiteral("tab_") + key));
    store->Panel = panel;
    store->Picker = picker;
    store->Tabs = tabs;
    store->Shared = shared;
    return store;
}

const Store &TheStore() {
    static const Store *store = MakeStore();
    return *store;
}

QStringList KeysOf(const List &aList) {
    EnsureApplication();
    QStringList keys;
    for (int i = 0; i < aList->Count(); ++i) keys << aList->KeyAt(i);
    return keys;
}

[[noreturn]] void RaiseBadPicture(qint32 aNumber, const QString &aText) {
    throw Failure(aNumber, QStringLiteral("AppendPicture"), aText);
}

void CheckNew(const QString &aKey, const QIcon &aPicture) {
    if (aKey.isEmpty())
        RaiseBadPicture(InvalidArgument, QStringLiteral("У рисунка должен быть ключ."));
    if (TheStore().Shared->Contains(aKey)) {  // it has the keys of the others
        RaiseBadPicture(
            KeyAlreadyPresent,
            QStringLiteral("Рисунок с ключом \"%1\" уже есть в списках рисунков.").arg(aKey));
    }
    if (aPicture.pixmap(QSize(theSide, theSide)).isNull())
        RaiseBadPicture(InvalidArgument,
                        QStringLiteral("Рисунок с ключом \"%1\" пуст или не читается.").arg(aKey));
}

QIcon WindowPicture(const QString &aName) {
    const auto &icons = TheStore().Icons;
    const auto found = icons.constFind(aName);
    if (found == icons.constEnd()) {
        throw Failure(InvalidArgument, QStringLiteral("Pictures"),
                      QStringLiteral("Рисунка \"%1\" нет.").arg(aName));
    }
    return *found;
}

/// The one list that windows share; it comes in one size.
class PictureServer : public VkPictureServer {
public:
    std::shared_ptr<const ImageList> GetImageList(qint32 /*aSizeKind*/) override {
        return SharedImages();
    }
};

const bool theServerIsEntered = [] {
    RegisterClass<PictureServer>(QString(thePictureServerClass));
    return true;
}();

}  // namespace

std::shared_ptr<const ImageList> PanelImages() {
    return TheStore().Panel;
}

std::shared_ptr<const ImageList> PickerImages() {
    return TheStore().Picker;
}

std::shared_ptr<const ImageList> TabImages() {
    return TheStore().Tabs;
}

std::shared_ptr<const ImageList> SharedImages() {
    return TheStore().Shared;
}

QIcon StatusPicture(int aIndex) {
    return WindowPicture(QStringLiteral("status_%1").arg(aIndex));
}

QIcon StandardPicture(int aNumber) {
    return WindowPicture(QStringLiteral("standard_%1").arg(aNumber));
}

QIcon WindowIcon(const QString &aWindow) {
    return WindowPicture(QStringLiteral("window_") + aWindow);
}

QStringList PanelPictureKeys() {
    return KeysOf(TheStore().Panel);
}

QStringList PickerPictureKeys() {
    return KeysOf(TheStore().Picker);
}

QStringList SharedPictureKeys() {
    return KeysOf(TheStore().Shared);
}

void AppendPicture(const QString &aKey, const QIcon &aPicture) {
    EnsureApplication();
    CheckNew(aKey, aPicture);
    for (const List &list : {TheStore().Panel, TheStore().Picker, TheStore().Shared})
        list->Add(aKey, aPicture);
}

}  // namespace Vk_DocQuery
