// The viewer's window on a simulated camera, with a plug-in that writes down what happens to it.
#include <QtTest>
#include <QtWidgets>

#include "host/StubPlugin.h"
#include "host/app/MainWindow.h"

using host::FrameView;

class tst_MainWindow : public QObject
{
    Q_OBJECT

    // Of the menus, by its text without the mark of its key.
    QAction* action(const QString& text) const
    {
        for (QAction* candidate : m_window->findChildren<QAction*>()) {
            if (candidate->text().remove('&') == text)
                return candidate;
        }
        qFatal("there is no action %s", qPrintable(text));
    }

    // Codes 10 everywhere before, 200 after.
    static std::shared_ptr<host::ShownFrame> mappedFrame(int width, int height)
    {
        auto frame = std::make_shared<host::ShownFrame>();
        frame->format = host::pixelFormatByName("Mono8");
        frame->mapped = true;
        const std::size_t pixels = std::size_t(width) * height;
        frame->before = {frame->format->code, width, height, 0, std::vector<std::uint8_t>(pixels, 10)};
        frame->after = {frame->format->code, width, height, 0, std::vector<std::uint8_t>(pixels, 200)};
        return frame;
    }

    const host::PluginModule m_module{[]() -> IPlugin* { return new StubPlugin; },
                                      [](IPlugin* plugin) { delete plugin; }};
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<host::MainWindow> m_window;

private slots:
    void init()
    {
        m_window.reset();
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<QSettings>(m_folder->filePath("settings.ini"), QSettings::IniFormat);
        StubPlugin::log().calls.clear();
        m_window = std::make_unique<host::MainWindow>(m_module, false, m_settings.get());
        host::CameraRequest request;
        request.camera = "no-lut";
        request.pixelFormat = "Mono8";
        m_window->show();
        QCOMPARE(m_window->openCamera(request), QString());
    }

    void settingsOutliveTheWindow()
    {
        for (const char* text :
             {"Simulated, LUT with LUTEnable", "1064 bytes: 256 entries", "Split", "Full scale, 1:1", "Dark"})
            action(text)->trigger();
        m_window->close();
        m_window.reset();

        const host::MainWindow next(m_module, false, m_settings.get());
        QCOMPARE(next.cameraRequest().camera, QString("lut-enable"));
        QCOMPARE(next.cameraRequest().lutBytes, 1064);
        const auto* view = next.findChild<FrameView*>();
        QVERIFY(view->pictureLayout() == FrameView::Layout::Split);
        QVERIFY(view->zoom() == FrameView::Zoom::FullScale);
        QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 128);
    }

    void spoiltSettingsAreNoHindrance()
    {
        for (const char* key : {"window/geometry", "window/state", "camera/key", "camera/lutBytes"})
            m_settings->setValue(key, "1e9 and more");
        m_settings->setValue("view/layout", 77);
        const host::MainWindow window(m_module, false, m_settings.get());
        QVERIFY(window.cameraRequest().camera.isEmpty());
        QVERIFY(window.findChild<FrameView*>()->pictureLayout() == FrameView::Layout::After);
    }

    void refusedCameraAndDroppedPictureKeepThePlugin()
    {
        host::CameraRequest request;
        request.camera = "lut";
        request.lutBytes = 1 << 30;
        QVERIFY(!m_window->openCamera(request).isEmpty());
        QCOMPARE(m_window->cameraRequest().camera, QString("no-lut"));
        QVERIFY(m_window->session().camera()->isStreaming());

        QImage picture(4, 4, QImage::Format_Grayscale8);
        picture.fill(40);
        const QString path = m_folder->filePath("grey.png");
        QVERIFY(picture.save(path));
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window.get(), &drop);

        const auto frame = m_window->session().firstFrame(std::chrono::seconds(5));
        QVERIFY(frame);
        QCOMPARE(host::codeAt(frame->before, 8, 1, 1), 40);
        QCOMPARE(StubPlugin::log().calls, QStringList({"create", "init"}));
        QVERIFY(!m_window->setScene(m_folder->filePath("nowhere.png")).isEmpty());
    }

    void keysInTheEditor()
    {
        QDialog editor(m_window.get());
        QSlider slider(&editor);
        QLineEdit number(&editor);
        QComboBox list(&editor);
        list.addItems({"1st", "4th"});
        editor.show();
        const auto works = [this](QWidget& widget, Qt::Key key, const char* entry) {
            widget.setFocus();
            QApplication::setActiveWindow(widget.window());
            QTest::keyClick(&widget, key);
            return action(entry)->isChecked();
        };
        QVERIFY(!works(number, Qt::Key_4, "Split"));
        QVERIFY(!works(list, Qt::Key_4, "Split"));
        list.showPopup();
        QVERIFY(!works(*list.view(), Qt::Key_4, "Split"));
        list.hidePopup();
        QVERIFY(works(slider, Qt::Key_4, "Split"));
        QVERIFY(works(list, Qt::Key_F4, "Show editor"));
    }

    void tablesAreSavedWhereOneMayWrite()
    {
        m_settings->setValue("folders/tables", m_folder->path());
        QString begun;
        QTimer::singleShot(0, this, [&begun] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            begun = dialog->directory().path();
            dialog->reject();
        });
        QFileDialog::getSaveFileName(nullptr, "Save", "/proc/sys", QString(), nullptr, // nobody writes there
                                     QFileDialog::DontUseNativeDialog);
        QCOMPARE(begun, m_folder->path());
    }

    void viewShowsBeforeAndAfter()
    {
        FrameView view;
        view.resize(400, 200);
        for (const bool mapped : {false, true}) {
            const auto frame = mappedFrame(200, 100);
            frame->mapped = mapped;
            view.setFrame(frame);
            view.setPictureLayout(FrameView::Layout::Split); // also of a picture that stands
            const QImage image = view.grab().toImage();
            QCOMPARE(qGray(image.pixel(90, 110)), mapped ? 10 : 200);
            QCOMPARE(qGray(image.pixel(310, 110)), 200);
        }
        QSignalSpy probed(&view, &FrameView::probed);
        QMouseEvent inside(QEvent::MouseMove, QPointF(399, 2), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &inside);
        QCOMPARE(probed.last().at(0).toString(), QString("(199, 1)  in 10  out 200"));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&view, &leave);
        QCOMPARE(probed.last().at(0).toString(), QString());
    }

    void fullScaleShowsEveryPixel()
    {
        FrameView view;
        view.resize(300, 200);
        const auto frame = mappedFrame(301, 201);
        for (std::size_t pixel = 0; pixel < frame->after.pixels.size(); ++pixel)
            frame->after.pixels[pixel] = pixel % 2 ? 255 : 0; // a checkerboard, for the width is odd
        view.setFrame(frame);
        view.setZoom(FrameView::Zoom::FullScale);
        const QImage image = view.grab().toImage();
        for (int x = 150; x < 160; ++x) {
            QVERIFY(qGray(image.pixel(x, 150)) == 0 || qGray(image.pixel(x, 150)) == 255);
            QVERIFY(image.pixel(x, 150) != image.pixel(x + 1, 150));
        }
    }
};

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
