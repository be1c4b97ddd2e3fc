#include <cstddef>
#include <cstring>
#include <map>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "foundation/Display.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

constexpr const char *theVariables[] = {"DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET",
                                        "XDG_RUNTIME_DIR", "QT_QPA_PLATFORM"};

/// What an X server says to who connects: that it will not have him, and why, or that he is in. The
/// bytes are those of the protocol: status, length of the reason, version, words that follow.
const QByteArray theRefusal("\0\x2\xB\0\0\0\x1\0no\0\0", 12);
const QByteArray theWelcome = QByteArray("\x1\0\xB\0\0\0\x8\0", 8) + QByteArray(32, '\0');

/// A socket that takes connections while it lives and says the same to everybody.
class Listener {
public:
    /// A name that begins with a zero byte belongs to no file.
    explicit Listener(const QByteArray &aName, const QByteArray &aWords = theWelcome)
        : theWords(aWords), theSocket(socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const auto size = static_cast<std::size_t>(aName.size());
        std::memcpy(address.sun_path, aName.constData(), size);
        const std::size_t end = aName.startsWith('\0') ? 0 : 1;
        Listen(reinterpret_cast<sockaddr *>(&address),
               offsetof(sockaddr_un, sun_path) + size + end);
    }
    explicit Listener(int aPort)
        : theWords(theWelcome), theSocket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<in_port_t>(aPort));
        Listen(reinterpret_cast<sockaddr *>(&address), sizeof address);
    }
    ~Listener() {
        shutdown(theSocket, SHUT_RDWR);  // accept comes back
        theAnswering.join();
        close(theSocket);
    }
    Q_DISABLE_COPY_MOVE(Listener)

private:
    void Listen(const sockaddr *aAddress, std::size_t aSize) {
        if (bind(theSocket, aAddress, static_cast<socklen_t>(aSize)) != 0 ||
            listen(theSocket, 1) != 0)
            qFatal("no socket");
        theAnswering = std::thread([this] {
            for (int client = accept(theSocket, nullptr, nullptr); client >= 0;
                 client = accept(theSocket, nullptr, nullptr)) {
                char asked[12];
                if (recv(client, asked, sizeof asked, MSG_WAITALL) == sizeof asked)
                    send(client, theWords.constData(), static_cast<std::size_t>(theWords.size()),
                         MSG_NOSIGNAL);
                close(client);
            }
        });
    }

    QByteArray theWords;
    int theSocket;
    std::thread theAnswering;
};

}  // namespace

/// What is known of a display before Qt looks for it.
class TestDisplay : public QObject {
    Q_OBJECT

private slots:
    void init() {
        for (const char *name : theVariables) {
            theBefore[name] = qgetenv(name);
            qunsetenv(name);
        }
        theFolder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(theFolder->path()));
    }
    void cleanup() {
        for (const auto &[name, value] : theBefore)
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

    void NobodyAnswers_data() {
        QTest::addColumn<QByteArray>("x");
        QTest::addColumn<QByteArray>("wayland");
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<QString>("why");
        const auto row = [](const char *aName, const char *aX, const char *aWayland,
                            const char *aPlatform, const char16_t *aWhy) {
            QTest::newRow(aName) << QByteArray(aX) << QByteArray(aWayland) << QByteArray(aPlatform)
                                 << QString::fromUtf16(aWhy);
        };
        row("nothing", "", "", "", u"переменные DISPLAY и WAYLAND_DISPLAY не заданы");
        row("number", ":987", "", "", u"DISPLAY=\":987\" не отвечает");
        row("screen", ":987.1", "", "", u"DISPLAY=\":987.1\" не отвечает");
        row("unix", "unix:987.0", "", "", u"DISPLAY=\"unix:987.0\" не отвечает");
        row("beyond the ports", ":60000", "", "", u"DISPLAY=\":60000\" не отвечает");
        row("another machine", "127.0.0.1:987.0", "", "xcb",
            u"DISPLAY=\"127.0.0.1:987.0\" не отвечает");
        row("socket by path", "/nowhere/x:0", "", "", u"DISPLAY=\"/nowhere/x:0\" не отвечает");
        row("no name", "экран", "", "", u"DISPLAY=\"экран\" не является именем экрана");
        row("named xcb", ":987", "", "xcb", u"DISPLAY=\":987\" не отвечает");
        row("xcb alone", "", "", "xcb", u"DISPLAY не задана");
        row("xcb beside a wayland", "", "w", "xcb:x=1", u"DISPLAY не задана");
        row("wayland", "", "w", "", u"WAYLAND_DISPLAY=\"w\" не отвечает");
        row("wayland by path", "", "/nowhere/w", "", u"WAYLAND_DISPLAY=\"/nowhere/w\" не отвечает");
        row("named wayland", ":987", "w", "wayland-egl", u"WAYLAND_DISPLAY=\"w\" не отвечает");
        row("wayland alone", "", "", "wayland", u"WAYLAND_DISPLAY не задана");
        row("both", ":987", "w", "",
            u"WAYLAND_DISPLAY=\"w\" не отвечает, DISPLAY=\":987\" не отвечает");
        row("both named", ":987", "", "xcb;wayland",
            u"DISPLAY=\":987\" не отвечает, WAYLAND_DISPLAY не задана");
    }
    void NobodyAnswers() {
        QFETCH(QString, why);
        SetVariables();
        QCOMPARE(ReasonNoDisplay(),
                 QStringLiteral("Окна показать нельзя: нет доступа к экрану (%1).").arg(why));
    }

    void LeftToQt_data() {
        QTest::addColumn<QByteArray>("x");
        QTest::addColumn<QByteArray>("wayland");
        QTest::addColumn<QByteArray>("platform");
        const auto row = [](const char *aName, const char *aX, const char *aWayland,
                            const char *aPlatform) {
            QTest::newRow(aName) << QByteArray(aX) << QByteArray(aWayland) << QByteArray(aPlatform);
        };
        row("offscreen", "", "", "offscreen");
        row("offscreen beside a dead display", ":987", "w", "offscreen");
        row("minimal", ":987", "", "minimal:enable_fonts");
        row("dead one or offscreen", ":987", "", "xcb;offscreen");
    }
    void LeftToQt() {
        SetVariables();
        QCOMPARE(ReasonNoDisplay(), QString());
    }

    void SomebodyAnswers_data() {
        QTest::addColumn<QByteArray>("x");
        QTest::addColumn<QByteArray>("wayland");
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<QByteArray>("socket");
        const auto row = [](const char *aName, const QByteArray &aX, const char *aWayland,
                            const char *aPlatform, const QByteArray &aSocket) {
            QTest::newRow(aName) << aX << QByteArray(aWayland) << QByteArray(aPlatform) << aSocket;
        };
        // Programs that run at the same time do not get into one another's way.
        const QByteArray number = QByteArray::number(1000 + getpid() % 50000);
        const QByteArray x = QByteArray(1, '\0') + "/tmp/.X11-unix/X" + number;
        const QByteArray port = QByteArray::number(6000 + number.toInt());
        row("number", ':' + number, "", "", x);
        row("screen", ':' + number + ".0", "", "xcb", x);
        row("unix", "unix:" + number, "", "", x);
        row("beside a dead wayland", ':' + number, "w", "", x);
        row("port", ':' + number, "", "", port);
        row("wayland", "", "w", "", "w");
        row("wayland beside a dead number", ":987", "w", "", "w");
        row("wayland by default", "", "", "wayland", "wayland-0");
    }
    void SomebodyAnswers() {
        QFETCH(QByteArray, socket);
        SetVariables();
        QVERIFY(!ReasonNoDisplay().isEmpty());
        bool isPort = false;
        const int port = socket.toInt(&isPort);
        const QByteArray path = QFile::encodeName(theFolder->filePath(QString::fromUtf8(socket)));
        const auto listener =
            isPort ? std::make_unique<Listener>(port)
                   : std::make_unique<Listener>(socket.startsWith('\0') ? socket : path);
        QCOMPARE(ReasonNoDisplay(), QString());
    }

    void AServerThatRefusesTheKey() {
        const QByteArray number = QByteArray::number(1000 + getpid() % 50000);
        const Listener listener(QByteArray(1, '\0') + "/tmp/.X11-unix/X" + number, theRefusal);
        qputenv("DISPLAY", ':' + number);
        QCOMPARE(ReasonNoDisplay(),
                 QStringLiteral("Окна показать нельзя: нет доступа к экрану (DISPLAY=\":%1\" "
                                "отказывает в доступе: ключ не подходит или его нет).")
                     .arg(QString::fromLatin1(number)));
    }

    void WaylandWithoutItsFolder() {
        qunsetenv("XDG_RUNTIME_DIR");
        qputenv("WAYLAND_DISPLAY", "w");
        QCOMPARE(ReasonNoDisplay(),
                 QStringLiteral("Окна показать нельзя: нет доступа к экрану (WAYLAND_DISPLAY=\"w\" "
                                "не отвечает)."));
    }

    void WaylandSocketIsConnectedAlready() {
        qputenv("WAYLAND_DISPLAY", "w");
        qputenv("WAYLAND_SOCKET", "3");
        QCOMPARE(ReasonNoDisplay(), QString());
    }

private:
    static void SetVariables() {
        QFETCH(QByteArray, x);
        QFETCH(QByteArray, wayland);
        QFETCH(QByteArray, platform);
        if (!x.isEmpty()) qputenv("DISPLAY", x);
        if (!wayland.isEmpty()) qputenv("WAYLAND_DISPLAY", wayland);
        if (!platform.isEmpty()) qputenv("QT_QPA_PLATFORM", platform);
    }

    std::map<const char *, QByteArray> theBefore;
    std::unique_ptr<QTemporaryDir> theFolder;
};

VK_TEST_CLASS(TestDisplay);

#include "TestDisplay.moc"
