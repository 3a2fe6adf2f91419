#include "TestMain.h"
#include "settings/HostSettings.h"
#include "settings/HostShortcuts.h"

#include <QKeySequence>

namespace {

const int k_allIds[] = {IShortcutSetting::ZoomIn,     IShortcutSetting::ZoomOut,    IShortcutSetting::FitToWindow,
                        IShortcutSetting::ActualSize, IShortcutSetting::FitToWidth, IShortcutSetting::MoveToRecycleBin};

} // namespace

/** The settings service on missing, damaged and contradictory files. */
class HostSettingsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void answersDefaults()
    {
        const std::pair<QByteArray, const char *> rows[] = {{"", "+"},
                                                            {QByteArray("\x00\xff{]=\n[[[", 9), "+"}, // no INI file
                                                            {"[shortcuts]\nzoomIn=Quux+Blub\n", "+"}, // no key
                                                            {"[shortcuts]\nzoomIn=\"A, B\"\n", "+"},  // several keys
                                                            {"[shortcuts]\nzoomIn=-\n", "+"},         // claimed twice
                                                            {"[shortcuts]\nzoomIn=\n", ""},           // switched off
                                                            {"[shortcuts]\nzoomIn=ctrl+i\n", "Ctrl+I"}};
        for (const auto &[text, pZoomInKey] : rows) {
            const QString path = writeIni(text);
            const HostShortcuts shortcuts(path);
            QVERIFY(shortcuts.isShortcutEnabled());
            QCOMPARE(shortcuts.shortcut(IShortcutSetting::ZoomIn).keySequence, QLatin1String(pZoomInKey));
            QStringList keys;
            for (const int nId : k_allIds) {
                const ShortcutRecord record = shortcuts.shortcut(nId);
                QVERIFY(!record.name.isEmpty() && !record.description.isEmpty());
                if (!record.keySequence.isEmpty())
                    QCOMPARE(QKeySequence::fromString(record.keySequence, QKeySequence::PortableText).count(), 1);
                keys.append(record.keySequence);
            }
            QCOMPARE(keys.removeDuplicates(), 0);
            QVERIFY(shortcuts.shortcut(1).name.isEmpty());

            const HostSettings settings(path);
            QVERIFY(settings.isLeftColumnShown());
            QVERIFY(!settings.isRightPanelHidden());
            QCOMPARE(settings.lastExportPath(), QString());
        }
    }

    void keepsChosenKeys()
    {
        const QString path = m_folder.filePath(QStringLiteral("new/host.ini"));
        {
            HostShortcuts shortcuts(path);
            QVERIFY(shortcuts.setKeySequence(IShortcutSetting::FitToWidth, QStringLiteral("Shift+W")));
            QVERIFY(shortcuts.setKeySequence(IShortcutSetting::MoveToRecycleBin, QString()));
            QVERIFY(!shortcuts.setKeySequence(IShortcutSetting::ZoomIn, QStringLiteral("no key")));
            QVERIFY(!shortcuts.setKeySequence(77, QStringLiteral("X")));
        }
        const HostShortcuts again(path);
        QCOMPARE(again.shortcut(IShortcutSetting::FitToWidth).keySequence, QStringLiteral("Shift+W"));
        QCOMPARE(again.shortcut(IShortcutSetting::MoveToRecycleBin).keySequence, QString());
        QCOMPARE(again.shortcut(IShortcutSetting::ZoomIn).keySequence, QStringLiteral("+"));
    }

    void keepsExportPath()
    {
        const QString path = m_folder.filePath(QStringLiteral("export.ini"));
        const QString exportPath = QString::fromUtf8("/tmp/Ordner, mit ; Umlaut ä");
        HostSettings(path).setLastExportPath(exportPath);
        QCOMPARE(HostSettings(path).lastExportPath(), exportPath);
    }

private:
    QString writeIni(const QByteArray &text)
    {
        const QString path = m_folder.filePath(QStringLiteral("%1.ini").arg(++m_nFiles));
        return writeFile(path, text) ? path : QString();
    }

    QTemporaryDir m_folder;
    int m_nFiles = 0;
};

BIGIMGPREVIEW_TEST_MAIN(HostSettingsTest)
#include "tst_host_settings.moc"
