// The built module driven as a host drives it: loaded by file, known by its three headers, its window found
// among the parent's children and its controls by their object names. Boxes and file dialogs are watched and
// answered.
#ifndef ORLUNE_TESTS_CONTRACT_MODULEHOST_H
#define ORLUNE_TESTS_CONTRACT_MODULEHOST_H

#include <functional>
#include <numeric>
#include <vector>

#include <QtWidgets>

#include "plugin/IPlugin.h"
#include "support/FakeCamera.h"
#include "support/Rows.h"

// The five settings.
struct Control
{
    const char* edit;
    const char* slider; // null for the range
    int start;
    int value; // another that is accepted
};
const Control kControls[] = {{"objGammaLineEdit", "objGammaSlider", 100, 200},
                             {"objBrightnessLineEdit", "objBrightnessSlider", 0, -20},
                             {"objContrastLineEdit", "objContrastSlider", 0, 35},
                             {"objLutRangeMinEdit", nullptr, 0, 100},
                             {"objLutRangeMaxEdit", nullptr, 4095, 1000}};

// The five sources.
const char* const kRadios[] = {"objInitLutRadioButton", "objDeviceLutRadioButton", "objLutFileRadioButton",
                               "objCSVFileRadioButton", "objDefaultRadioButton"};
enum Source { Standard, Device, LutFile, Csv, Default };

inline int identity(int i)
{
    return i;
}
inline int negative(int i)
{
    return 4095 - i;
}

// The bytes of a table of f(i), with a trailer where settings are given.
constexpr int kTableBytes = 16384;
inline QByteArray image(int (*f)(int), const QVector<qint32>& settings = {}, const QByteArray& name = {})
{
    QByteArray bytes(settings.isEmpty() ? kTableBytes : kTableBytes + 40, '\0');
    for (int i = 0; i < 4096; ++i)
        qToLittleEndian<qint32>(f(i), bytes.data() + 4 * i);
    if (settings.isEmpty())
        return bytes;
    memcpy(bytes.data() + kTableBytes, "CBG0", 4);
    for (int i = 0; i < 5; ++i)
        qToLittleEndian<qint32>(settings[i], bytes.data() + kTableBytes + 4 + 4 * i);
    memcpy(bytes.data() + kTableBytes + 24, name.constData(), size_t(name.size()));
    return bytes;
}

// An application directory with a catalogue of two curves, made the working directory while it lives.
class WorkingDirectory
{
public:
    WorkingDirectory() : m_before(QDir::currentPath())
    {
        QDir::setCurrent(m_directory.path());
        QDir().mkpath(standardPath());
        write(standardPath() + "/lut4_11.bin", image(identity));
        write(standardPath() + "/negative.bin", image(negative));
    }
    ~WorkingDirectory() { QDir::setCurrent(m_before); }

    static QString standardPath() { return QStringLiteral("./resource/lqplugins/LookUpTable/StandardLut"); }
    static void write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("can't write %s", qPrintable(path));
    }
    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QString m_before;
    QTemporaryDir m_directory{QDir::tempPath() + QString::fromUtf8("/é 表-XXXXXX")};
};

class ModuleHost : public QObject
{
    Q_OBJECT

public:
    explicit ModuleHost(GenApi_3_0::INodeMap* camera, int languageId = 0,
                        GenApi_3_0::INodeMap* deviceInfo = nullptr)
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        m_library.setFileName(QStringLiteral(ORLUNE_MODULE));
        m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
        auto create = CreatePluginObjectFunction(m_library.resolve("CreatePluginObject"));
        m_destroy = DestoryPluginObjectFunction(m_library.resolve("DestoryPluginObject"));
        if (!create || !m_destroy)
            qFatal("%s", qPrintable(m_library.errorString()));
        plugin = create();
        connect(plugin, SIGNAL(SigPluginMsg(PLUGIN_MSG)), this, SLOT(onMessage(PLUGIN_MSG)));
        qApp->installEventFilter(this);

        m_param.remoteDeviceMap = camera;
        m_param.deviceInfoMap = deviceInfo;
        m_param.languageId = languageId;
        start();
    }
    ~ModuleHost() override
    {
        end();
        m_library.unload();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); // Chinese sets another
    }

    void end()
    {
        if (!plugin)
            return;
        plugin->UninitPlugin();
        destroyObject();
    }
    void destroyObject() { m_destroy(std::exchange(plugin, nullptr)); }

    // Again only after UninitPlugin.
    void start()
    {
        PluginInitParam param = m_param; // gone when the call is over
        param.parentWidget = parent.get();
        initResult = plugin->InitPlugin(&param);
        dialog = parent->findChild<QDialog*>();
    }
    void send(int type)
    {
        PLUGIN_MSG message{};
        message.type = type;
        plugin->SlotProcessDemoMsg(message);
    }
    void show()
    {
        send(MSG_SHOW_DIALOG);
        dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        messages.clear();
    }

    template <class Widget>
    Widget& find(const char* name) const
    {
        auto* widget = dialog->findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("no widget %s", name);
        return *widget;
    }
    QString text(const char* edit) const { return find<QLineEdit>(edit).text(); }
    int slider(const char* name) const { return find<QSlider>(name).value(); }
    void moveSlider(const char* name, int value) { find<QSlider>(name).setValue(value); }
    bool enabled(const char* name) const { return find<QWidget>(name).isEnabled(); }
    QString standard() const { return find<QComboBox>("objStandardComboBox").currentText(); }

    // The five values, and which slider stands elsewhere.
    QString settings() const
    {
        QStringList values;
        for (const Control& control : kControls) {
            values << text(control.edit);
            if (control.slider && QString::number(slider(control.slider)) != values.last())
                values.last() += QString(" but %1 in %2").arg(slider(control.slider)).arg(control.slider);
        }
        return values.join(' ');
    }

    // How the window and the trailer in the camera contradict each other after an action that went well;
    // empty when they don't.
    QString contradiction(const QByteArray& table) const
    {
        const char* trailer = table.constData() + kTableBytes;
        QString stamped = QString::fromLatin1(trailer, 4);
        for (int i = 1; i <= 5; ++i)
            stamped += QString(" %1").arg(qFromLittleEndian<qint32>(trailer + 4 * i));
        stamped += ' ' + QString::fromLatin1(trailer + 24, 16).section(QChar(0), 0, 0);
        const QString shown = "CBG0 " + settings() + ' ' + standard();
        return stamped == shown ? QString() : stamped + " in the camera, not " + shown;
    }

    // As a person does it: click into the edit, mark everything, type, press Return.
    void type(const char* edit, const QString& text, Qt::Key end = Qt::Key_Return)
    {
        auto& widget = find<QLineEdit>(edit);
        // A box may have taken that, and no window manager gives it back.
        QApplication::setActiveWindow(dialog);
        QTest::mouseClick(&widget, Qt::LeftButton);
        widget.setFocus();
        QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&widget, Qt::Key_Backspace);
        QTest::keyClicks(&widget, text);
        QTest::keyClick(&widget, end);
    }
    void click(const char* button)
    {
        QTest::mouseClick(&find<QAbstractButton>(button), Qt::LeftButton, {}, {6, 8});
    }
    bool wheel(const char* name, QPoint angle)
    {
        QWidget& widget = find<QWidget>(name);
        const QPointF centre = widget.rect().center();
        QWheelEvent event(centre, widget.mapToGlobal(centre.toPoint()), {}, angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &event);
        return event.isAccepted();
    }
    // With a file of the working directory where the source needs one; none cancels.
    void take(int source, const QString& file = {})
    {
        if (!file.isEmpty() && (source == LutFile || source == Csv))
            fileAnswers << m_directory.filePath(file);
        click(kRadios[source]);
    }
    // Gives what the file got.
    QByteArray save(const QString& file = "saved.lut")
    {
        QFile::remove(file);
        fileAnswers << m_directory.filePath(file);
        click("objSaveLutButton");
        return WorkingDirectory::read(file);
    }
    // By arrow keys, one entry after the other.
    void choose(const QString& entry)
    {
        auto& combo = find<QComboBox>("objStandardComboBox");
        combo.setFocus();
        const int steps = combo.findText(entry) - combo.currentIndex();
        for (int i = 0; i < qAbs(steps); ++i)
            QTest::keyClick(&combo, steps > 0 ? Qt::Key_Down : Qt::Key_Up);
    }

    QStringList takeBoxes() { return std::exchange(boxes, {}); }
    QVector<int> takeMessages() { return std::exchange(messages, {}); }

    std::unique_ptr<QWidget> parent = std::make_unique<QWidget>();
    IPlugin* plugin = nullptr;
    QDialog* dialog = nullptr;
    int initResult = 0;
    QStringList boxes;                  // "title|text" of each message box; closed by themselves
    QVector<int> messages;              // codes from the plug-in
    std::function<void()> whileBoxOpen; // or a file dialog
    std::function<void(int)> onCode;

    // What the next file dialogs are answered with; empty cancels.
    QStringList fileAnswers;
    std::function<void()> afterFileChosen;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Show)
            return false;
        if (auto* box = qobject_cast<QMessageBox*>(watched)) {
            boxes << box->windowTitle() + QLatin1Char('|') + box->text();
            if (whileBoxOpen)
                whileBoxOpen();
            QMetaObject::invokeMethod(box, "accept", Qt::QueuedConnection);
        } else if (auto* files = qobject_cast<QFileDialog*>(watched)) {
            if (whileBoxOpen)
                whileBoxOpen();
            const QString answer = fileAnswers.isEmpty() ? QString() : fileAnswers.takeFirst();
            QMetaObject::invokeMethod(
                files,
                [=] {
                    if (answer.isEmpty())
                        return files->reject();
                    files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(answer);
                    if (afterFileChosen)
                        connect(files, &QFileDialog::fileSelected, this, [this] { afterFileChosen(); });
                    QMetaObject::invokeMethod(files, "accept");
                },
                Qt::QueuedConnection);
        }
        return false;
    }

private slots:
    void onMessage(const PLUGIN_MSG& message)
    {
        messages << message.type;
        if (onCode)
            onCode(message.type);
    }

private:
    const QDir m_directory = QDir::current(); // before a language is set
    QLibrary m_library;
    DestoryPluginObjectFunction m_destroy = nullptr;
    PluginInitParam m_param{};
};

// A camera of plain values.
struct Kind
{
    const char* name;
    bool hasEnable;
    bool hasRegister;
};
const Kind kKinds[] = {{"lut", false, true}, {"lut-enable", true, true}, {"no-lut", false, false}};

struct Desk
{
    FakeCamera camera;
    WorkingDirectory directory;
};

// The plug-in's window on such a camera.
class Session : public Desk, public ModuleHost
{
public:
    explicit Session(const Kind& kind = kKinds[0], int languageId = 0)
        : Desk{FakeCamera(kind.hasEnable, kind.hasRegister), {}}, ModuleHost(&camera, languageId)
    {
        show();
        camera.log.clear();
    }
    QByteArray& table() const { return camera.node<FakeCamera::Register>("LUTValueAll").bytes; }
    int writes() const { return camera.log.filter("LUTValueAll.Set").size(); }
    FakeCamera::Failure& failure(const char* node) const { return camera.any(node).failure; }
};

constexpr std::uint32_t kMono12 = 0x01100005;
using Table = std::vector<std::uint16_t>;

// One call with frames of one line; gives the result and sets *processed.
inline int process(IPlugin& plugin, std::uint32_t format, const void* in, void* out, int width, int height,
                   std::uint8_t* processed, int stage = 1)
{
    FrameIn source{};
    FrameOut target{};
    FrameResult result{};
    source.pixelFormat = format;
    source.data = const_cast<void*>(in);
    memset(source.reserved8, 0x7f, sizeof source.reserved8); // the input's dimensions play no part
    target.width = width;
    target.height = height;
    target.data = out;
    const int code = plugin.ProcessFrame(&source, &target, stage, &result);
    if (processed)
        *processed = result.processed;
    return code;
}

// What the frame path maps each 12-bit word to: the editor's current table.
inline Table mappedRamp(IPlugin& plugin)
{
    Table ramp(4096);
    std::iota(ramp.begin(), ramp.end(), std::uint16_t(0));
    if (process(plugin, kMono12, ramp.data(), ramp.data(), 4096, 1, nullptr) != 0)
        qFatal("the frame was refused");
    return ramp;
}

#endif
