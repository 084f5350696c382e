#include <sys/stat.h>

#include <QtTest>

#include "lut/StandardCatalogue.h"
#include "support/TestFolder.h"

using namespace orlune;

class tst_StandardCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void Files()
    {
        const TestFolder folder;
        const QString foreign = QString::fromUtf8("曲线"), longer = "0123456789abcdefgh"; // beyond a trailer
        for (const QString& name : {QString("srgb"), QString("Log"), QString("cie"), QString("a.old"),
                                    QString("a"), QString(""), foreign, longer})
            folder.put(name + ".bin");
        folder.put("b.BIN");
        const QString target = folder.put("target.dat");
        QVERIFY(QDir(folder.path()).mkdir("directory.bin"));
        QVERIFY(QFile::link(target, folder.path("link.bin")));
        QVERIFY(QFile::link(folder.path("absent"), folder.path("dangling.bin")));
        QVERIFY(QFile::link(folder.path("directory.bin"), folder.path("directorylink.bin")));
        QCOMPARE(mkfifo(qPrintable(folder.path("pipe.bin")), 0600), 0);

        QStringList names;
        for (const StandardCurve& curve : ScanStandardCatalogue(folder.path(), "bin")) {
            names += curve.Name;
            const QString file = curve.Name == "link" ? target : folder.path(curve.Name + ".bin");
            QCOMPARE(curve.Path, QFileInfo(file).canonicalFilePath());
        }
        QCOMPARE(names, (QStringList{"", longer, "a", "cie", "link", "Log", "srgb", foreign}));
    }
};

QTEST_GUILESS_MAIN(tst_StandardCatalogue)
#include "tst_StandardCatalogue.moc"
