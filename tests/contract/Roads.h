// The roads through the plug-in that touch the camera, run on a simulated one, and what there is to see of
// editor and camera before and after.
#ifndef ORLUNE_TESTS_CONTRACT_ROADS_H
#define ORLUNE_TESTS_CONTRACT_ROADS_H

#include "contract/ModuleHost.h"

#include "host/camera/SimulatedCamera.h"

struct CameraKind
{
    const char* name;
    const char* model;
    bool locked; // by a running acquisition
};
// lut-enable is never asked whether it is locked, so locked covers free.
const CameraKind kCameras[] = {{"lut", "lut", false},
                               {"lut locked", "lut", true},
                               {"lut-enable locked", "lut-enable", true},
                               {"no-lut", "no-lut", false}};
const int kNoLut = 3;

// One change of a setting.
inline void step(ModuleHost& editor)
{
    editor.wheel("objContrastSlider", {0, 120});
}

// An editor with a standard curve and a setting to lose.
inline void prepare(ModuleHost& editor)
{
    editor.click(kRadios[Standard]);
    editor.choose("lut4_11");
    editor.choose("negative");
    editor.wheel("objBrightnessSlider", {0, 120});
}

// The plug-in on a simulated camera, and all that can be seen of both.
class Rig
{
public:
    // What a person sees of the editor.
    struct Seen
    {
        QString controls;
        QImage picture;
    };

    explicit Rig(const CameraKind& kind) : m_kind(kind)
    {
        host::SimulatedCameraOptions options;
        options.model = kind.model;
        options.width = options.height = 8; // no frame is looked at
        camera = host::makeSimulatedCamera(options, &m_error);
        resetCamera();
    }

    // The lock on or off, no fault waiting.
    void resetCamera()
    {
        camera->setLocked(m_kind.locked);
        faults().disarm();
    }

    // Starts the plug-in; no window shows.
    void start()
    {
        editor = std::make_unique<ModuleHost>(camera->remoteNodeMap(), 0, camera->deviceNodeMap());
        editor->onCode = [this](int code) { // a host that stops its acquisition, and goes on with it
            if (code == MSG_DEVICE_ACCESS_BEGIN || code == MSG_DEVICE_ACCESS_END)
                camera->setLocked(m_kind.locked && code == MSG_DEVICE_ACCESS_END);
        };
    }

    // Starts it, shows it, learns what things look like when all is well, and keeps files to be read.
    void startAndLearn()
    {
        start();
        editor->show();
        started = look();
        step(*editor);
        startedAndStepped = table();
        editor->save("kept.lut");
        editor->save("kept.csv");
        prepare(*editor);
        step(*editor);
        preparedAndStepped = table();
    }

    QByteArray table() const { return camera->registerBytes(&m_error); }
    QByteArray userSet() const { return camera->userSetBytes(&m_error); }
    // A fresh camera has another user set selected than the one that the plug-in uses.
    void selectFactorySet()
    {
        auto* node = camera->remoteNodeMap()->GetNode("UserSetSelector");
        dynamic_cast<GenApi_3_0::IEnumeration&>(*node).SetIntValue(0);
    }

    Seen look() const
    {
        QStringList controls{editor->settings(), editor->standard()};
        for (const char* radio : kRadios)
            controls << QString::number(editor->find<QRadioButton>(radio).isChecked());
        for (const Control& control : kControls)
            controls << QString::number(editor->enabled(control.edit));
        controls << QString::number(editor->enabled("objStandardComboBox"));
        return {controls.join(' '), editor->find<QWidget>("objPlotterWidget").grab().toImage()};
    }

    // How the window looks otherwise; empty when it doesn't.
    QString difference(const Seen& wanted) const
    {
        const Seen seen = look();
        if (seen.controls != wanted.controls)
            return seen.controls + " instead of " + wanted.controls;
        return seen.picture == wanted.picture ? QString() : QString("another picture");
    }
    QString contradiction() { return editor->contradiction(table()); }
    QByteArray savedTable() { return editor->save(); }

    // Whether the plug-in's messages are accesses that were opened and closed one after the other.
    bool bracketsAreClosed() const
    {
        const QVector<int>& messages = editor->messages;
        for (int i = 0; i < messages.size(); ++i) {
            if (messages[i] != (i % 2 ? MSG_DEVICE_ACCESS_END : MSG_DEVICE_ACCESS_BEGIN))
                return false;
        }
        return messages.size() % 2 == 0 && (messages.isEmpty() || m_kind.locked);
    }

    host::AccessFaults& faults() const { return camera->accessFaults(); }

    WorkingDirectory directory;
    std::unique_ptr<host::SimulatedCamera> camera;
    std::unique_ptr<ModuleHost> editor;
    // Right after the start, and the camera's table a step on from there or from prepare().
    Seen started;
    QByteArray startedAndStepped, preparedAndStepped;

private:
    const CameraKind& m_kind;
    mutable QString m_error; // nobody reads it
};

struct Road
{
    enum End {
        Restored, // the control is as before
        Default,  // the dialog is on the Default source, as after its start
        Kept      // nothing in the editor has changed
    };
    QByteArray name;
    End failed;
    std::function<void(ModuleHost&)> act;
    std::function<void(Rig&)> before = [](Rig&) {};

    bool loads() const { return name.startsWith("Device"); } // the camera's user set
    void prepareRig(Rig& rig) const
    {
        rig.resetCamera(); // whatever a case before has left behind
        prepare(*rig.editor);
        before(rig);
        rig.selectFactorySet();
        rig.editor->takeBoxes();
        rig.editor->takeMessages();
    }
};

// The files are those that startAndLearn() has kept.
inline void takeSource(ModuleHost& editor, int source)
{
    editor.take(source, source == Csv ? "kept.csv" : "kept.lut");
}

inline std::vector<Road> makeRoads()
{
    std::vector<Road> roads;
    for (const Control& control : kControls) {
        const auto type = [=](ModuleHost& e) { e.type(control.edit, QString::number(control.value)); };
        const auto turn = [=](ModuleHost& e) { e.wheel(control.slider, {0, -120}); };
        roads.push_back({QByteArray(control.edit) + " typed", Road::Restored, type});
        if (control.slider)
            roads.push_back({QByteArray(control.slider) + " stepped", Road::Restored, turn});
    }
    const QByteArray names[] = {"Standard", "Device", "Lut File", "CSV File", "Default"};
    for (int source = Standard; source <= Default; ++source) {
        const auto take = [=](ModuleHost& e) { takeSource(e, source); };
        const auto leave = [=](Rig& rig) {
            if (source == Standard)
                rig.editor->take(Default);
        };
        roads.push_back({names[source] + " taken", Road::Default, take, leave});
        roads.push_back(
            {names[source] + " taken again", Road::Default, take, [take](Rig& rig) { take(*rig.editor); }});
    }
    roads.push_back({"standard curve chosen", Road::Default, [](ModuleHost& e) { e.choose("lut4_11"); }});
    const auto store = [](ModuleHost& e) { e.click("objWriteLutButton"); };
    roads.push_back({"stored", Road::Kept, store, [store](Rig& rig) {
                         rig.editor->take(Default); // so that it shows whether anything was stored
                         store(*rig.editor);
                         prepare(*rig.editor);
                     }});
    return roads;
}

#endif
