// The plug-in's window on a camera that holds anything in its register: settings are restored from its table,
// then controls are moved. Runs in the directory that holds the standard curves.
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSlider>

#include "FuzzInput.h"
#include "PluginWindow.h"

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
    const int length = input.takeBelow(4) == 0 ? input.takeBelow(4 * kWhole) : kWhole;
    const auto trailer = input.takeBytes(40);
    const auto bytes = fuzz::repeated<char>(input.takeBytes(input.take<std::uint8_t>()), std::size_t(length));
    const std::size_t end = std::min(trailer.size(), std::size_t(length));
    std::copy_n(trailer.begin(), end, bytes.get() + length - end);
    return QByteArray(bytes.get(), length);
}

template <class Widget>
Widget* takeWidget(fuzz::Input& input, const QObject& window)
{
    const auto widgets = window.findChildren<Widget*>();
    return widgets.at(input.takeBelow(widgets.size()));
}

void act(fuzz::Input& input, const QObject& window)
{
    switch (input.take<std::uint8_t>() % 3) {
    case 0: {
        auto* slider = takeWidget<QSlider>(input, window);
        slider->setValue(input.takeNear(slider->minimum(), slider->maximum()));
        break;
    }
    case 1: {
        auto* edit = takeWidget<QLineEdit>(input, window);
        edit->setText(QString::number(input.takeNear(-150, 4095)));
        emit edit->editingFinished();
        break;
    }
    default:
        window.findChild<QRadioButton*>(QStringLiteral("objDeviceLutRadioButton"))->click();
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
    camera.node<FakeCamera::Register>("LUTValueAll").bytes = takeRegister(input);
    fuzz::PluginWindow running(camera);
    require(running.code == 0, "the plug-in runs");
    const auto* window = running.parent.findChild<QDialog*>();
    for (int i = 0; i < 8 && !input.isEmpty(); ++i)
        act(input, *window);
    running.plugin.UninitPlugin();
    return 0;
}
