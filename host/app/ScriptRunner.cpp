#include "host/app/ScriptRunner.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDialog>
#include <QEventLoop>
#include <QFile>
#include <QGroupBox>
#include <QImage>
#include <QImageWriter>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QRadioButton>
#include <QTimer>

#include "host/app/FrameImage.h"
#include "host/app/MainWindow.h"
#include "host/app/WidgetInput.h"

namespace host {

namespace {

constexpr std::chrono::milliseconds kFramePatience(5000);
constexpr int kHashDigits = 8;
constexpr int kScreenshotGap = 8; // pixels

// Length and contents in a few characters.
QString fingerprint(const QByteArray& bytes)
{
    const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    return QString("%1 bytes, sha1 %2").arg(bytes.size()).arg(QString::fromLatin1(hash.left(kHashDigits)));
}

// One line: name, value, then what the user can do with it.
QString describe(const QString& name, const QWidget& widget)
{
    QStringList parts = {name};
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget))
        parts += Transcript::quoted(edit->text());
    else if (const auto* slider = qobject_cast<const QAbstractSlider*>(&widget))
        parts += QString::number(slider->value());
    else if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
        parts += Transcript::quoted(combo->currentText());
    else if (const auto* label = qobject_cast<const QLabel*>(&widget))
        parts += Transcript::quoted(label->text());
    else if (const auto* box = qobject_cast<const QGroupBox*>(&widget))
        parts += Transcript::quoted(box->title());
    else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        parts += Transcript::quoted(button->text());
        if (button->isCheckable())
            parts += button->isChecked() ? "on" : "off";
    } else if (widget.isWindow())
        parts += Transcript::quoted(widget.windowTitle());
    parts += widget.isEnabled() ? "enabled" : "disabled";
    parts += widget.isVisible() ? "visible" : "hidden";
    return parts.join(' ');
}

} // namespace

ScriptRunner::ScriptRunner(MainWindow& window, Transcript& transcript, const QDir& directory)
    : m_window(window), m_transcript(transcript), m_directory(directory), m_answers(transcript)
{
    const Session& session = window.session();
    connect(&session, &Session::pluginStarted, this, [this](int code, const QString& text) {
        m_transcript.event(
            code == 0 ? QString("plug-in started")
                      : QString("plug-in did not start: %1 %2").arg(code).arg(Transcript::quoted(text)));
    });
    connect(&session, &Session::pluginMessage, this, [this](int type) {
        m_transcript.event(QString("message %1, %2").arg(type).arg(messageName(type)));
    });
    connect(&session, &Session::registerWritten, this,
            [this](int bytes) { m_transcript.event(QString("register written, %1 bytes").arg(bytes)); });
    connect(&session, &Session::streamingChanged, this,
            [this](bool streaming) { m_transcript.event(streaming ? "stream on" : "stream off"); });
    connect(&session, &Session::cameraLost, this, [this](const QString& reason) {
        m_transcript.event("camera lost " + Transcript::quoted(reason));
    });
    connect(&session, &Session::note, this,
            [this](const QString& sentence) { m_transcript.event("note " + Transcript::quoted(sentence)); });
}

bool ScriptRunner::run(const Script& script)
{
    for (const ScriptCommand& command : script.commands) {
        m_transcript.command(command.text);
        const QString wrong = execute(command);
        if (!wrong.isEmpty()) {
            m_error = QString("line %1: %2").arg(command.line).arg(wrong);
            return false;
        }
        QCoreApplication::processEvents();
        if (command.verb == Verb::Quit)
            break;
    }
    for (const QString& answer : m_answers.unusedAnswers())
        m_transcript.event("no file dialog asked for " +
                           (answer.isEmpty() ? QString("the cancelling") : answer));
    return true;
}

QString ScriptRunner::execute(const ScriptCommand& command)
{
    const QStringList& words = command.words;
    const QString first = words.value(0);
    Camera& camera = *m_window.session().camera();
    switch (command.verb) {
    case Verb::Show:
        m_window.showEditor();
        return {};
    case Verb::Hide:
        m_window.hideEditor();
        return {};
    case Verb::Set:
    case Verb::Click:
    case Verb::Type:
    case Verb::Wheel:
    case Verb::Get:
        return useWidget(command);
    case Verb::Tab: {
        activateWindow();
        pressKey(Qt::Key_Tab);
        const QWidget* widget = QApplication::focusWidget();
        m_transcript.event("focus on " + (widget ? widget->objectName() : QString("nothing")));
        return {};
    }
    case Verb::File:
        m_answers.answerFile(first, first.isEmpty() ? QString() : absolute(first));
        return {};
    case Verb::Register:
    case Verb::UserSet: {
        QString error;
        const QByteArray bytes =
            command.verb == Verb::Register ? camera.registerBytes(&error) : camera.userSetBytes(&error);
        return writeBytes(first, bytes, error);
    }
    case Verb::Poke:
        return poke(first);
    case Verb::Frame:
        return writeFrame(first);
    case Verb::Fault:
        return camera.setFault(first, words.at(1) == "on");
    case Verb::Lock:
        return camera.setLocked(first == "on");
    case Verb::Stream:
        if (first == "on")
            m_window.session().startStream();
        else
            m_window.session().stopStream();
        return {};
    case Verb::Camera: {
        CameraRequest request = m_window.cameraRequest();
        request.camera = first;
        request.lutBytes = words.size() > 1 ? words.at(1).toInt() : -1;
        return m_window.openCamera(request);
    }
    case Verb::Reconnect: {
        const QString error = m_window.reconnect();
        m_transcript.event(error.isEmpty() ? "reconnected" : "not reconnected: " + Transcript::quoted(error));
        return {};
    }
    case Verb::Plugin:
        m_window.session().restartPlugin();
        return {};
    case Verb::Scene:
        return m_window.setScene(sceneName(first, m_directory));
    case Verb::Choose:
        return choose(first, words.at(1));
    case Verb::Screenshot:
        return screenshot(first);
    case Verb::Wait:
        wait(first.toInt());
        return {};
    case Verb::Quit:
        return {};
    }
    return {};
}

QString ScriptRunner::useWidget(const ScriptCommand& command)
{
    const QStringList& words = command.words;
    const QString name = words.at(0);
    QWidget* widget = findWidget(name);
    if (!widget)
        return QString("there is no widget \"%1\"").arg(name);
    if (command.verb == Verb::Get)
        m_transcript.event(describe(name, *widget));
    else if (!widget->isVisible() || !widget->isEnabled()) // what a person cannot use, a script cannot either
        m_transcript.event(name + (widget->isVisible() ? " is disabled" : " is hidden"));
    else if (command.verb == Verb::Set)
        return set(*widget, words.at(1));
    else if (command.verb == Verb::Click)
        return click(*widget, words);
    else if (command.verb == Verb::Wheel)
        turnWheel(*widget, words.at(1).toInt());
    else if (qobject_cast<QLineEdit*>(widget))
        typeText(*widget, words.value(1));
    else
        return QString("\"%1\" is no line edit").arg(name);
    return {};
}

QString ScriptRunner::set(QWidget& widget, const QString& value)
{
    if (auto* slider = qobject_cast<QAbstractSlider*>(&widget)) {
        bool number = false;
        const int position = value.toInt(&number);
        if (!number || position < slider->minimum() || position > slider->maximum())
            return QString("the slider goes from %1 to %2").arg(slider->minimum()).arg(slider->maximum());
        dragSlider(*slider, position);
        return {};
    }
    if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
        const int entry = combo->findText(value, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (entry < 0)
            return QString("the combo box has no entry \"%1\"").arg(value);
        focusByClick(widget);
        combo->setCurrentIndex(entry);
        return {};
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&widget))
        return setButton(*button, value);
    return QString("\"%1\" is no slider, combo box or button").arg(widget.objectName());
}

QString ScriptRunner::setButton(QAbstractButton& button, const QString& value)
{
    const bool on = value == "on";
    if (!button.isCheckable() || (!on && (value != "off" || qobject_cast<QRadioButton*>(&button))))
        return "a radio button can be set on, another button that stays down on or off";
    if (button.isChecked() != on)
        clickWidget(button, QPoint(1, button.height() / 2));
    return {};
}

QString ScriptRunner::click(QWidget& widget, const QStringList& words)
{
    QPoint position = widget.rect().center();
    if (words.size() == 3)
        position = QPoint(words.at(1).toInt(), words.at(2).toInt());
    else if (qobject_cast<QRadioButton*>(&widget))
        position.setX(1); // the text of a wide button may end before its middle
    if (!widget.rect().contains(position))
        return QString("the widget is %1 by %2 pixels").arg(widget.width()).arg(widget.height());
    clickWidget(widget, position);
    return {};
}

// Menu and entry by the text that a person reads; the entry may stand in a menu below.
QString ScriptRunner::choose(const QString& menu, const QString& entry)
{
    const auto shown = [](QString text) { return text.remove('&').remove("..."); };
    for (const QAction* top : m_window.menuBar()->actions()) {
        if (shown(top->text()) != menu)
            continue;
        for (QAction* action : top->menu()->findChildren<QAction*>()) {
            if (action->menu() || shown(action->text()) != entry)
                continue;
            if (action->isEnabled())
                action->trigger();
            else
                m_transcript.event(entry + " is disabled");
            return {};
        }
    }
    return QString("there is no entry \"%1\" in a menu \"%2\"").arg(entry, menu);
}

QString ScriptRunner::writeBytes(const QString& file, const QByteArray& bytes, const QString& error)
{
    if (!error.isEmpty()) {
        m_transcript.event("nothing to write: " + Transcript::quoted(error));
        return {};
    }
    m_transcript.event(fingerprint(bytes));
    return writeFile(file, bytes);
}

QString ScriptRunner::writeFile(const QString& name, const QByteArray& bytes) const
{
    QFile file(absolute(name));
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
    return written ? QString() : QString("%1 cannot be written: %2").arg(name, file.errorString());
}

QString ScriptRunner::poke(const QString& file)
{
    QFile source(absolute(file));
    if (!source.open(QIODevice::ReadOnly))
        return QString("%1 cannot be read: %2").arg(file, source.errorString());
    const QByteArray bytes = source.readAll();
    const QString error = m_window.session().camera()->pokeRegister(bytes);
    m_transcript.event(error.isEmpty() ? fingerprint(bytes) : "refused: " + Transcript::quoted(error));
    return {};
}

QString ScriptRunner::writeFrame(const QString& file)
{
    const std::shared_ptr<const ShownFrame> frame = m_window.session().firstFrame(kFramePatience);
    QBuffer pgm;
    pgm.open(QIODevice::WriteOnly);
    if (!frame || !frame->format || !writePgm(frame->after, *frame->format, pgm)) {
        m_transcript.event("no frame");
        return {};
    }
    m_transcript.event(QString("%1 %2 x %3, %4, %5")
                           .arg(frame->format->name)
                           .arg(frame->after.width)
                           .arg(frame->after.height)
                           .arg(frame->mapped ? "mapped by the plug-in" : "not mapped by the plug-in",
                                fingerprint(pgm.data())));
    return writeFile(file, pgm.data());
}

// The windows side by side, wherever the screen has room for them.
QString ScriptRunner::screenshot(const QString& file)
{
    QVector<QImage> windows = {m_window.grab().toImage()};
    if (QDialog* editor = m_window.session().editor(); editor && editor->isVisible())
        windows += editor->grab().toImage();
    QSize size(-kScreenshotGap, 0);
    for (QImage& window : windows) {
        window.setDevicePixelRatio(1);
        size = QSize(size.width() + window.width() + kScreenshotGap, qMax(size.height(), window.height()));
    }
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    int x = 0;
    for (const QImage& window : windows) {
        painter.drawImage(x, 0, window);
        x += window.width() + kScreenshotGap;
    }
    painter.end();
    QImageWriter writer(absolute(file));
    writer.setCompression(100); // pictures of the documents are kept
    return writer.write(picture) ? QString()
                                 : QString("%1 cannot be written: %2").arg(file, writer.errorString());
}

void ScriptRunner::wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// Where no window manager runs, nobody else makes a window the active one again when a box has gone.
void ScriptRunner::activateWindow()
{
    if (QApplication::activeWindow())
        return;
    QDialog* editor = m_window.session().editor();
    QApplication::setActiveWindow(editor && editor->isVisible() ? static_cast<QWidget*>(editor) : &m_window);
}

QWidget* ScriptRunner::findWidget(const QString& name) const
{
    for (QWidget* window :
         {static_cast<QWidget*>(m_window.session().editor()), static_cast<QWidget*>(&m_window)}) {
        if (!window)
            continue;
        if (window->objectName() == name)
            return window;
        if (auto* widget = window->findChild<QWidget*>(name))
            return widget;
    }
    return nullptr;
}

QString ScriptRunner::absolute(const QString& path) const
{
    return QDir::cleanPath(m_directory.absoluteFilePath(path));
}

} // namespace host
