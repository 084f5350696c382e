// The built module driven as a host drives it: loaded by file, known by its three headers, its window found
// among the parent's children and its controls by their object names. Boxes and file dialogs are watched and
// answered.
#ifndef ORLUNE_TESTS_CONTRACT_MODULEHOST_H
#define ORLUNE_TESTS_CONTRACT_MODULEHOST_H

#include <functional>
#include <numeric>
#include <vector>

#include <QtTest>
#include <QtWidgets>

#include "plugin/IPlugin.h"
#include "support/FakeCamera.h"

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

// An application directory with a catalogue of two curves, made the working directory while it lives.
class WorkingDirectory
{
public:
    WorkingDirectory() : m_before(QDir::currentPath())
    {
        QDir::setCurrent(m_directory.path());
        QDir().mkpath(standardPath());
        write(standardPath() + "/lut4_11.bin", [](int i) { return i; });
        write(standardPath() + "/negative.bin", [](int i) { return 4095 - i; });
    }
    ~WorkingDirectory() { QDir::setCurrent(m_before); }

    static QString standardPath() { return QStringLiteral("./resource/lqplugins/LookUpTable/StandardLut"); }
    QString path(const QString& name) const { return m_directory.filePath(name); }

    // A table-only image of f(i).
    static void write(const QString& path, const std::function<int(int)>& f)
    {
        QByteArray bytes(16384, '\0');
        for (int i = 0; i < 4096; ++i)
            qToLittleEndian<qint32>(f(i), bytes.data() + 4 * i);
        writeBytes(path, bytes);
    }
    static void writeBytes(const QString& path, const QByteArray& bytes)
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
    QTemporaryDir m_directory;
};

class ModuleHost : public QObject
{
    Q_OBJECT

public:
    explicit ModuleHost(GenApi_3_0::INodeMap* camera, int languageId = 0,
                        GenApi_3_0::INodeMap* deviceInfo = nullptr)
    {
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
        m_param.parentWidget = &parent;
        start();
    }
    ~ModuleHost() override
    {
        plugin->UninitPlugin();
        m_destroy(plugin);
        m_library.unload();
    }

    // Again only after UninitPlugin.
    void start()
    {
        PluginInitParam param = m_param; // gone when the call is over
        initResult = plugin->InitPlugin(&param);
        dialog = parent.findChild<QDialog*>();
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
    bool enabled(const char* name) const { return find<QWidget>(name).isEnabled(); }

    // As a person does it: click into the edit, mark everything, type, press Return.
    void type(const char* edit, const QString& text, Qt::Key end = Qt::Key_Return)
    {
        auto& widget = find<QLineEdit>(edit);
        QApplication::setActiveWindow(
            dialog); // a box may have taken that, and no window manager gives it back
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
    void wheel(const char* name, QPoint angle)
    {
        QWidget& widget = find<QWidget>(name);
        const QPointF centre = widget.rect().center();
        QWheelEvent event(centre, widget.mapToGlobal(centre.toPoint()), {}, angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &event);
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

    QWidget parent;
    IPlugin* plugin = nullptr;
    QDialog* dialog = nullptr;
    int initResult = 0;
    QStringList boxes;     // "title|text" of each message box; closed by themselves
    QVector<int> messages; // codes from the plug-in
    std::function<void()> whileBoxOpen;
    std::function<void(int)> onCode;

    // What the next file dialogs are answered with; empty cancels.
    QStringList fileAnswers;
    QStringList fileDialogs; // "caption|filter" of each
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
            fileDialogs << files->windowTitle() + QLatin1Char('|') +
                               files->nameFilters().join(QLatin1String(";;"));
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
    QLibrary m_library;
    DestoryPluginObjectFunction m_destroy = nullptr;
    PluginInitParam m_param{};
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
