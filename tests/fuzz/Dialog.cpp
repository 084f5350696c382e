// The plug-in's window on a camera that holds anything in its registers and may lack nodes, have them of
// another type, or fail at any of them: settings are restored from the camera's table, then controls are
// moved. Runs in the directory that holds the standard curves.
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSlider>
#include <QTextCodec>

#include "FuzzInput.h"
#include "OffscreenApplication.h"
#include "lut/PlainString.h"
#include "plugin/OrlunePlugin.h"
#include "support/FakeCamera.h"

using fuzz::require;

namespace {

// Closes every box.
class BoxCloser : public QObject
{
public:
    BoxCloser() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QMessageBox*>(watched))
            QMetaObject::invokeMethod(watched, "accept", Qt::QueuedConnection);
        return false;
    }
};

// The table's length mostly, else any; 40 bytes of trailer and a pattern for the rest.
QByteArray takeRegister(fuzz::Input& input)
{
    constexpr int kWhole = 16424;
    constexpr int kTrailer = 40;
    const int kind = input.takeBelow(4);
    const int length = kind == 0 ? input.takeBelow(4 * kWhole) : kind == 1 ? kWhole - kTrailer : kWhole;
    const auto trailer = input.takeBytes(kTrailer);
    const auto bytes = fuzz::repeated<char>(input.takeBytes(input.take<std::uint8_t>()), std::size_t(length));
    const std::size_t end = std::min(trailer.size(), std::size_t(length));
    std::copy(trailer.begin(), trailer.begin() + std::ptrdiff_t(end), bytes.get() + length - end);
    return QByteArray(bytes.get(), length);
}

void shapeCamera(fuzz::Input& input, FakeCamera& camera)
{
    auto& lut = camera.node<FakeCamera::Register>("LUTValueAll");
    lut.bytes = takeRegister(input);
    constexpr qint64 kLengths[] = {-1, 0, 40, 64 * 1024 * 1024 + 1, 1LL << 40, -1};
    const auto length = input.take<std::uint8_t>();
    if (length < 4)
        lut.claimedLength = kLengths[length];
    camera.node<FakeCamera::Integer>("TLParamsLocked").value = input.take<std::int8_t>();
    camera.node<FakeCamera::Enumeration>("UserSetSelector").value = input.take<std::int8_t>();
    for (const char* name : {"LUTValueAll", "LUTSelector", "TLParamsLocked", "UserSetSelector", "UserSetLoad",
                             "UserSetSave", "UserSetDefault"}) {
        const auto fault = input.take<std::uint8_t>();
        if (fault >= 0xf8)
            camera.any(name).failure = FakeCamera::Failure(fault % 4);
        else if (fault >= 0xf4)
            camera.any(name).mode = GenApi_3_0::EAccessMode(fault % 4);
        else if (fault == 0xf3)
            camera.add<FakeCamera::Command>(name);
        else if (fault == 0xf2)
            camera.remove(name);
    }
}

template <class Widget>
Widget* takeWidget(fuzz::Input& input, const QObject& window)
{
    const auto widgets = window.findChildren<Widget*>();
    return widgets.isEmpty() ? nullptr : widgets.at(input.takeBelow(widgets.size()));
}

void act(fuzz::Input& input, OrlunePlugin& plugin, QDialog& window)
{
    switch (input.take<std::uint8_t>() % 6) {
    case 0: {
        // The other two sources ask for a file.
        const char* const sources[] = {"objDeviceLutRadioButton", "objInitLutRadioButton",
                                       "objDefaultRadioButton"};
        window.findChild<QRadioButton*>(QLatin1String(sources[input.takeBelow(3)]))->click();
        break;
    }
    case 1: {
        auto* slider = takeWidget<QSlider>(input, window);
        slider->setValue(input.takeNear(slider->minimum(), slider->maximum()));
        break;
    }
    case 2: {
        auto* edit = takeWidget<QLineEdit>(input, window);
        edit->setText(QString::number(input.takeNear(-150, 4095)));
        emit edit->editingFinished();
        break;
    }
    case 3: {
        auto* standard = window.findChild<QComboBox*>(QStringLiteral("objStandardComboBox"));
        standard->setCurrentIndex(input.takeBelow(standard->count()));
        break;
    }
    case 4:
        QMetaObject::invokeMethod(&window, "on_objWriteLutButton_clicked");
        break;
    default: {
        PLUGIN_MSG message{};
        message.type = input.takeNear(MSG_SHOW_DIALOG, MSG_HIDE_DIALOG);
        plugin.SlotProcessDemoMsg(message);
    }
    }
    // What a trailer brought may be beyond a slider's ends; the slider is not.
    for (const auto* slider : window.findChildren<QSlider*>())
        require(slider->value() >= slider->minimum() && slider->value() <= slider->maximum(),
                "a slider is within its ends");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::startApplication();
    static BoxCloser boxes;
    fuzz::Input input(data, size);
    FakeCamera camera(input.takeBelow(2) != 0);
    shapeCamera(input, camera);
    {
        QWidget parent;
        OrlunePlugin plugin;
        PluginInitParam param{};
        param.remoteDeviceMap = &camera;
        param.languageId = input.takeBelow(2);
        param.parentWidget = &parent;
        const int code = plugin.InitPlugin(&param);
        require(code == 0 || code == -4, "the plug-in runs, or the probe failed");
        auto* window = parent.findChild<QDialog*>();
        for (int i = 0; code == 0 && i < 8 && !input.isEmpty(); ++i)
            act(input, plugin, *window);
        plugin.UninitPlugin();
    }
    QTextCodec::setCodecForLocale(nullptr);
    orlune::SetPlainStringCodec(nullptr);
    return 0;
}
