#pragma once

#include <QByteArray>
#include <QImage>
#include <QThread>
#include <QVector>

#include <condition_variable>
#include <memory>
#include <mutex>

struct mpv_handle;
struct mpv_render_context;
class QOffscreenSurface;
class RenderBackend;

/** How frames are to be drawn. */
enum class Rendering {
    Automatic, ///< With OpenGL where hardware does it, in software otherwise.
    OpenGl,    ///< With OpenGL also where that is software: for tests.
    Software,
    None ///< Sound only.
};

/** How a player puts out what it plays. */
struct PlayerSetup {
    Rendering rendering = Rendering::Automatic;
    QByteArray soundOutput; ///< The core's name of a sound output; empty for the best there is.
};

/**
 * The thread of one player core: makes the core, draws its frames, ends it. Nothing in the GUI thread ever waits for a
 * frame, nor for the core to begin or to end.
 *
 * Owner: PlayerThreads, which lets it end by itself. Thread: made and asked in the GUI thread; only run() draws.
 * While it runs it calls no function of the core but those for drawing, as the core waits for it.
 */
class PlayerThread final : public QThread {
    Q_OBJECT

public:
    explicit PlayerThread(const PlayerSetup &setup);
    ~PlayerThread() override;

    /** Makes the core, if that was not asked for before. */
    void begin();
    bool hasBegun() const { return m_bBegun; }

    /** The core, from signalReady until quit() was called; null when it could not be made. */
    mpv_handle *core() const { return m_pCore; }

    /** Whether turned videos come out upright by themselves. */
    bool turnsFrames() const { return m_bTurnsFrames; }

    /** In device pixels; frames fill it, with bars where their shape is another one. */
    void setFrameSize(const QSize &size);

    /** The last frame drawn since forgetFrames; null without one. The pixels never change afterwards. */
    QImage frame() const;

    /** What was drawn is dropped, and nothing is delivered until the core has a new frame. */
    void forgetFrames();

    /** Ends the core and the thread, without waiting. */
    void quit();

Q_SIGNALS:
    /** The core is there, or could not be made. */
    void signalReady();
    /** frame() is another one. */
    void signalFrame();

protected:
    void run() override;

private:
    struct FreeRenderer {
        void operator()(mpv_render_context *pContext) const;
    };
    /** What only this thread touches. */
    struct Drawing;

    bool makeCore();
    bool makeRenderer();
    bool waitForWork(QSize *pSize, bool *pResized);
    void drawFrame(const QSize &size, bool bResized);
    QImage takeBuffer(const QSize &size);
    void wake();

    const PlayerSetup m_setup;
    bool m_bBegun = false;
    std::unique_ptr<QOffscreenSurface> m_pSurface; ///< Must be made and ended in the GUI thread.
    mpv_handle *m_pCore = nullptr;
    Drawing *m_pDrawing = nullptr; ///< Of run(), as long as it runs.
    bool m_bTurnsFrames = false;

    mutable std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_work;
    QSize m_size;
    QImage m_frame;
    bool m_bWoken = false;
    bool m_bResized = false;
    bool m_bQuit = false;
    bool m_bNewFrameNeeded = true;
};
