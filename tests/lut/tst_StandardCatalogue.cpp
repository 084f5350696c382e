#include <sys/stat.h>

#include <QTemporaryDir>
#include <QtTest>

#include "lut/StandardCatalogue.h"

using namespace orlune;

class tst_StandardCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void NamesAndOrder()
    {
        const QString foreign = QString::fromUtf8("曲线"),
                      longer = "0123456789abcdefgh"; // no trailer holds them
        for (const QString& name :
             {QString("srgb.bin"), QString("Log.bin"), QString("cie.bin"), QString("a.old.bin"),
              QString("a.bin"), QString("b.BIN"), QString(".bin"), foreign + ".bin", longer + ".bin"})
            Touch(name);
        QCOMPARE(Names(), (QStringList{"", longer, "a", "cie", "Log", "srgb", foreign}));
    }

    void Links()
    {
        Touch("target.dat");
        QVERIFY(QDir(m_dir->path()).mkdir("directory.bin"));
        QVERIFY(QFile::link(m_dir->filePath("target.dat"), m_dir->filePath("link.bin")));
        QVERIFY(QFile::link(m_dir->filePath("absent"), m_dir->filePath("dangling.bin")));
        QVERIFY(QFile::link(m_dir->filePath("directory.bin"), m_dir->filePath("directorylink.bin")));
        QCOMPARE(mkfifo(qPrintable(m_dir->filePath("pipe.bin")), 0600), 0);
        const auto curves = ScanStandardCatalogue(m_dir->path(), "bin");
        QCOMPARE(curves.size(), 1);
        QCOMPARE(curves[0].Name, QString("link"));
        QCOMPARE(curves[0].Path, QFileInfo(m_dir->filePath("target.dat")).canonicalFilePath());
    }

    void NothingToScan()
    {
        QCOMPARE(ScanStandardCatalogue(m_dir->filePath("absent"), "bin").size(), 0);
        Touch("file");
        QCOMPARE(ScanStandardCatalogue(m_dir->filePath("file"), "bin").size(), 0);
    }

private:
    void Touch(const QString& name)
    {
        QFile file(m_dir->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    QStringList Names()
    {
        QStringList names;
        for (const StandardCurve& curve : ScanStandardCatalogue(m_dir->path(), "bin"))
            names += curve.Name;
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(tst_StandardCatalogue)
#include "tst_StandardCatalogue.moc"
