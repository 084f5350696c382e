// Every allocation that the module's own code asks for, refused one at a time: the right code or box, nothing
// lost, nothing changed by half. This program's allocation functions take the place of the module's.
#include "contract/Roads.h"
#include "support/Allocations.h"

#include <dlfcn.h>

namespace {

const void* g_module = nullptr;

const void* moduleOf(const void* address)
{
    Dl_info info{};
    return dladdr(address, &info) ? info.dli_fbase : nullptr;
}

constexpr std::size_t kRegisterBytes = 16424;
const QStringList kNoTransfer{"Error|Invalid parameter! "}; // the transfer buffer was refused

} // namespace

class tst_Memory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_create = CreatePluginObjectFunction(m_library.resolve("CreatePluginObject"));
        m_destroy = DestoryPluginObjectFunction(m_library.resolve("DestoryPluginObject"));
        QVERIFY(m_create && m_destroy);
        g_module = moduleOf(reinterpret_cast<const void*>(m_create));
        g_isOurs = [](const void* caller) { return moduleOf(caller) == g_module; };
    }

    void objectCreated()
    {
        IPlugin* plugin = nullptr;
        int requests = 0;
        for (int refused = -1; refused < requests; ++refused) {
            watch(refused, [&] { plugin = m_create(); });
            requests = refused < 0 ? g_asked : requests;
            QCOMPARE(plugin != nullptr, refused < 0);
            m_destroy(plugin);
            QCOMPARE(g_alive, 0);
        }
        QVERIFY(requests > 0);
    }

    void started()
    {
        Rig rig(kCameras[0]);
        rig.start();
        ModuleHost& editor = *rig.editor;
        const QString title = editor.dialog->windowTitle();
        editor.plugin->UninitPlugin();
        int requests = 0;
        QMap<int, int> results;
        for (int refused = -1; refused < requests; ++refused) {
            watch(refused, [&] { editor.start(); });
            requests = refused < 0 ? g_asked : requests;
            ++results[editor.initResult];
            if (editor.initResult == 0) { // what may be lost is the camera's name
                QCOMPARE(editor.dialog->windowTitle() == title, refused < 0);
            } else if (editor.initResult == -1) {
                QVERIFY(!editor.dialog);
            } else {
                QCOMPARE(editor.initResult, -2);
                editor.send(MSG_SHOW_DIALOG);
                step(editor);
                editor.send(MSG_HIDE_DIALOG);
            }
            QCOMPARE(editor.boxes, QStringList());
            QCOMPARE(editor.messages, QVector<int>());
            editor.plugin->UninitPlugin();
            QVERIFY(g_alive <= 2); // strings of the object's
        }
        QCOMPARE(results.value(-2), 5); // the validators
        QCOMPARE(results.value(0), 2);
        QVERIFY(results.value(-1) > 5);

        editor.start();
        QCOMPARE(editor.initResult, 0);
        editor.show();
        step(editor);
        QCOMPARE(rig.contradiction(), QString());
        rig.editor.reset();
        QCOMPARE(g_alive, 0);
    }

    // The curve engine's tables come with the first step. Without one the editor goes on with the base table.
    void firstStep()
    {
        Rig rig(kCameras[0]);
        rig.startAndLearn();
        ModuleHost& editor = *rig.editor;
        QByteArray wanted;
        int requests = 0;
        int engine = 0;
        for (int refused = -1; refused < requests; ++refused) {
            editor.plugin->UninitPlugin();
            QCOMPARE(g_alive, 0);
            editor.start();
            editor.show();
            editor.click(kRadios[Default]);
            const QByteArray base = rig.table();
            watch(refused, [&] { step(editor); });
            requests = refused < 0 ? g_asked : requests;
            const bool isTransfer = g_refusedBytes == kRegisterBytes;
            QCOMPARE(editor.takeBoxes(), isTransfer ? kNoTransfer : QStringList());
            if (refused >= 0 && !isTransfer) {
                ++engine;
                QVERIFY(rig.table() != base && rig.table().left(kTableBytes) == base.left(kTableBytes));
                QCOMPARE(rig.contradiction(), QString());
            }
            // Everything is at hand again.
            editor.type("objContrastLineEdit", "35");
            QCOMPARE(editor.takeBoxes(), QStringList());
            QCOMPARE(rig.contradiction(), QString());
            if (refused == -1)
                wanted = rig.table();
            QVERIFY(rig.table() == wanted);
        }
        QVERIFY(engine > 0);
    }

    // Without its transfer a road ends as on a register without a length, which tst_FaultMatrix has.
    void roads()
    {
        Rig rig(kCameras[1]);
        rig.startAndLearn();
        ModuleHost& editor = *rig.editor;
        const int alive = g_alive;
        for (const Road& road : makeRoads()) {
            int requests = 0;
            for (int refused = -1; refused < requests; ++refused) {
                road.prepareRig(rig);
                watch(refused, [&] { road.act(editor); });
                QCOMPARE(g_alive, alive);
                QVERIFY2(rig.bracketsAreClosed(), road.name);
                QCOMPARE(editor.takeBoxes(), g_refusedBytes == kRegisterBytes ? kNoTransfer : QStringList());
                if (refused == -1) {
                    requests = g_asked;
                    continue;
                }
                step(editor);
                QCOMPARE(editor.takeBoxes(), QStringList());
                QCOMPARE(rig.contradiction(), QString());
                QVERIFY2(rig.savedTable() == rig.table(), road.name);
            }
            QVERIFY2(requests > 0 || road.failed == Road::Kept, road.name);
        }
    }

    void frame()
    {
        Rig rig(kCameras[kNoLut]);
        rig.start();
        rig.editor->click(kRadios[Standard]);
        rig.editor->choose("negative");
        for (const std::uint32_t format : {0x01080001u, kMono12}) {
            const QByteArray pixels(256, 'x');
            QByteArray frame = pixels;
            std::uint8_t processed = 0;
            int code = 0;
            const auto map = [&] {
                code =
                    process(*rig.editor->plugin, format, frame.constData(), frame.data(), 8, 8, &processed);
            };
            int requests = 0;
            for (int refused = -1; refused < requests; ++refused) {
                watch(refused, map);
                const bool isMapped = refused == -1;
                QCOMPARE(code, isMapped ? 0 : -3);
                QCOMPARE(processed, std::uint8_t(isMapped));
                QCOMPARE(frame == pixels, !isMapped);
                QCOMPARE(g_alive, 0);
                requests = isMapped ? g_asked : requests;
                frame = pixels;
            }
            QVERIFY(requests > 0);
        }
    }

private:
    QLibrary m_library{QStringLiteral(ORLUNE_MODULE)}; // held, so that the module stays where it is
    CreatePluginObjectFunction m_create = nullptr;
    DestoryPluginObjectFunction m_destroy = nullptr;
};

QTEST_MAIN(tst_Memory)
#include "tst_Memory.moc"
