// Whether the plug-in's window, whose geometry is fixed, shows its texts whole under the viewer's style and
// font.
#include <QtTest>
#include <QtWidgets>

#include "host/app/Appearance.h"
#include "host/app/Session.h"
#include "host/camera/SimulatedCamera.h"

static int buttonTextWidth(const QWidget& button, QStyle::SubElement contents)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(contents, &option, &button).width();
}

// Room that the style leaves for the text of a widget.
static int textWidth(const QWidget& widget)
{
    if (qobject_cast<const QRadioButton*>(&widget))
        return buttonTextWidth(widget, QStyle::SE_RadioButtonContents);
    if (qobject_cast<const QPushButton*>(&widget))
        return buttonTextWidth(widget, QStyle::SE_PushButtonContents);
    if (qobject_cast<const QLineEdit*>(&widget)) {
        QStyleOptionFrame option;
        option.initFrom(&widget);
        option.lineWidth = widget.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &widget);
        constexpr int kMarginsOfQLineEdit = 4, kCursor = 1;
        return widget.style()->subElementRect(QStyle::SE_LineEditContents, &option, &widget).width() -
               kMarginsOfQLineEdit - kCursor;
    }
    return widget.contentsRect().width();
}

class tst_Appearance : public QObject
{
    Q_OBJECT

    void checkTexts(bool chinese)
    {
        host::applyStyle();
        QDir::setCurrent(QFileInfo(ORLUNE_MODULE).path());
        QString error;
        const std::unique_ptr<host::PluginModule> module = host::PluginModule::load(ORLUNE_MODULE, &error);
        QVERIFY2(module, qPrintable(error));
        QWidget window;
        host::Session session(*module, chinese);
        session.open(host::makeSimulatedCamera({}, &error), &window);
        QVERIFY(session.editor());

        int checked = 0;
        for (const QWidget* widget : session.editor()->findChildren<QWidget*>()) {
            QStringList texts{widget->property("text").toString(), widget->property("title").toString()};
            if (qobject_cast<const QLineEdit*>(widget))
                texts = QStringList{"4095", "-150"};
            for (const QString& text : texts) {
                // What is drawn: a full-width colon ends in a blank that may be cut off.
                const int right = widget->fontMetrics().tightBoundingRect(text).right();
                QVERIFY2(right < textWidth(*widget), qPrintable(widget->objectName() + ": " + text));
                checked += !text.isEmpty();
            }
        }
        QVERIFY(checked > 20);
    }

private slots:
    void english() { checkTexts(false); }
    void chinese() { checkTexts(true); }
};

QTEST_MAIN(tst_Appearance)
#include "tst_Appearance.moc"
