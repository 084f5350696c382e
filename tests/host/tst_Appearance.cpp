// Whether the plug-in's window, whose geometry is fixed, shows its texts whole under the viewer's style and
// font.
#include <QtTest>
#include <QtWidgets>

#include "host/app/Appearance.h"
#include "host/app/Session.h"
#include "host/camera/SimulatedCamera.h"

class tst_Appearance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void editorShowsItsTextsWhole_data();
    void editorShowsItsTextsWhole();
};

void tst_Appearance::initTestCase()
{
    host::applyStyle();
    QDir::setCurrent(QFileInfo(ORLUNE_MODULE).path());
}

void tst_Appearance::editorShowsItsTextsWhole_data()
{
    QTest::addColumn<bool>("chinese");
    QTest::newRow("English") << false;
    QTest::newRow("Chinese") << true;
}

// Room that the style leaves for the text of a widget.
static int textWidth(const QWidget& widget)
{
    if (auto* button = qobject_cast<const QRadioButton*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(button);
        return button->style()->subElementRect(QStyle::SE_RadioButtonContents, &option, button).width();
    }
    if (auto* button = qobject_cast<const QPushButton*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(button);
        return button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button).width();
    }
    if (auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
        QStyleOptionFrame option;
        option.initFrom(edit);
        option.lineWidth = edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, edit);
        constexpr int kMarginsOfQLineEdit = 4, kCursor = 1;
        return edit->style()->subElementRect(QStyle::SE_LineEditContents, &option, edit).width() -
               kMarginsOfQLineEdit - kCursor;
    }
    return widget.contentsRect().width();
}

void tst_Appearance::editorShowsItsTextsWhole()
{
    QFETCH(bool, chinese);
    QString error;
    const std::unique_ptr<host::PluginModule> module = host::PluginModule::load(ORLUNE_MODULE, &error);
    QVERIFY2(module, qPrintable(error));
    QWidget window;
    host::Session session(*module, chinese);
    session.open(host::makeSimulatedCamera({}, &error), &window);
    QVERIFY(session.editor());

    int checked = 0;
    for (const QWidget* widget : session.editor()->findChildren<QWidget*>()) {
        QStringList texts;
        if (qobject_cast<const QLineEdit*>(widget))
            texts = QStringList{"4095", "-150"};
        else
            texts = QStringList{widget->property("text").toString(), widget->property("title").toString()};
        for (const QString& text : texts) {
            // What is drawn: a full-width colon ends in a blank that may be cut off.
            const int right = widget->fontMetrics().tightBoundingRect(text).right();
            QVERIFY2(right < textWidth(*widget),
                     qPrintable(QString("%1 \"%2\": %3 pixels of text, room for %4")
                                    .arg(widget->objectName(), text)
                                    .arg(right + 1)
                                    .arg(textWidth(*widget))));
            checked += !text.isEmpty();
        }
    }
    QVERIFY(checked > 20);
}

QTEST_MAIN(tst_Appearance)
#include "tst_Appearance.moc"
