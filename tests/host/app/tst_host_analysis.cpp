#include "../IdleAnalysis.h"
#include "LibraryFixture.h"
#include "app/AnalysisQueue.h"

namespace {

/** An analysis that takes as long as the test wants. */
class GatedAnalysis final : public IdleAnalysis {
public:
    AnalysisOutcome analyse(const QString &path, const std::atomic_bool &cancelled) override
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_started.append(path.section(QLatin1Char('/'), -1));
        }
        while (!bOpen && !cancelled)
            QThread::msleep(1);
        // No converter for it, say.
        if (cancelled || path.endsWith(QLatin1String(".pptx")))
            return AnalysisOutcome::Cancelled;
        return path.contains(QLatin1String("broken")) ? AnalysisOutcome::Impossible : AnalysisOutcome::Done;
    }

    QStringList started() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_started;
    }

    std::atomic_bool bOpen{false};

private:
    mutable std::mutex m_mutex;
    QStringList m_started;
};

} // namespace

/** The queue that has pictures made: order, progress, and what the next start still has to do. */
class HostAnalysisTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void worksThroughEverything()
    {
        LibraryFixture place;
        for (const char *pName : {"1.jpg", "2.png", "broken.jpg", "text.txt", "sound.mp3"})
            place.write(QLatin1String(pName));
        place.open();
        GatedAnalysis analysis;
        analysis.bOpen = true;
        AnalysisQueue queue(place.library.get());
        QSignalSpy impossible(&queue, &AnalysisQueue::signalImpossible);
        QSignalSpy progress(&queue, &AnalysisQueue::signalProgress);
        place.library->rescan();
        // The queue came later than the records: it is told of everything that is shown from now on.
        place.library->showFolders({place.files()});
        queue.setAnalysis(&analysis);
        QTRY_COMPARE(analysis.started().size(), 4);
        QTRY_VERIFY(!queue.isBusy());
        QTRY_VERIFY(!progress.isEmpty() && progress.last().at(1).toInt() == 0);
        QCOMPARE(impossible.size(), 1);
        QCOMPARE(impossible.first().first().toLongLong(), place.id(QStringLiteral("broken.jpg")));
        // A label makes a new record, not new work.
        place.label(QStringLiteral("1.jpg"), QStringLiteral("x"));
        QVERIFY(!queue.isBusy());
        QCOMPARE(analysis.started().size(), 4);
    }

    void tellsNoProgressOfWhatIsPutOff()
    {
        LibraryFixture place;
        place.write(QStringLiteral("slides.pptx"));
        place.open();
        GatedAnalysis analysis;
        AnalysisQueue queue(place.library.get());
        QSignalSpy progress(&queue, &AnalysisQueue::signalProgress);
        place.library->showFolders({place.files()});
        queue.setAnalysis(&analysis);
        QTRY_VERIFY(!progress.isEmpty());
        QCOMPARE(progress.last().at(1).toInt(), 1);
        analysis.bOpen = true;
        QTRY_COMPARE(progress.last().at(1).toInt(), 0);
    }

    void raisesWhatIsLookedAt()
    {
        LibraryFixture place;
        constexpr int k_nFiles = 40;
        for (int i = 0; i < k_nFiles; ++i)
            place.write(QStringLiteral("%1.jpg").arg(i));
        place.open();
        GatedAnalysis analysis;
        AnalysisQueue queue(place.library.get());
        place.library->showFolders({place.files()});
        queue.setAnalysis(&analysis);
        QTRY_VERIFY(!place.library->isScanning());
        const int nWorkers = qMax(1, QThread::idealThreadCount());
        QTRY_COMPARE(analysis.started().size(), nWorkers);
        QString waiting;
        for (int i = 0; i < k_nFiles && waiting.isEmpty(); ++i) {
            const QString name = QStringLiteral("%1.jpg").arg(i);
            if (i > k_nFiles / 2 && !analysis.started().contains(name))
                waiting = name;
        }
        queue.raise({place.id(waiting), 987654});
        analysis.bOpen = true;
        QTRY_COMPARE(analysis.started().size(), k_nFiles);
        const int nPosition = analysis.started().indexOf(waiting);
        QVERIFY2(nPosition <= 2 * nWorkers, qPrintable(QString::number(nPosition)));
    }

    void goesOnAfterInterruption()
    {
        LibraryFixture place;
        for (int i = 0; i < 10; ++i)
            place.write(QStringLiteral("%1.jpg").arg(i));
        place.open();
        {
            GatedAnalysis analysis;
            analysis.bOpen = true;
            AnalysisQueue queue(place.library.get());
            place.library->showFolders({place.files()});
            queue.setAnalysis(&analysis);
            QTRY_VERIFY(analysis.started().size() == 10 && !queue.isBusy());
            place.write(QStringLiteral("later.jpg"));
            analysis.bOpen = false;
            QTRY_VERIFY(analysis.started().contains(QStringLiteral("later.jpg")));
            // Ends at once, in the middle of it.
            queue.setAnalysis(nullptr);
        }
        place.open();
        GatedAnalysis analysis;
        analysis.bOpen = true;
        AnalysisQueue queue(place.library.get());
        place.library->showFolders({place.files()});
        queue.setAnalysis(&analysis);
        QTRY_COMPARE(analysis.started(), QStringList{QStringLiteral("later.jpg")});
        QTRY_VERIFY(!queue.isBusy() && !place.library->isScanning());
        QCOMPARE(analysis.started().size(), 1);
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostAnalysisTest)
#include "tst_host_analysis.moc"
