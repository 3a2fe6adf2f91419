#pragma once

#include "FakePlugins.h"
#include "Gate.h"
#include "interfaces/plugin/IPluginManager.h"
#include "interfaces/services/IImageDecoder.h"

#include <QSet>

/** The host's decoder behind a gate: as slow as a test likes, and real all the same. Gate and count: any thread. */
class GatedDecoder final : public IImageDecoder {
public:
    virtual ~GatedDecoder() = default;
    bool openFile(const QByteArray &utf8Path) override;
    IDecodedDocument *takeDocument() override { return pReal->takeDocument(); }
    void closeFile() override { pReal->closeFile(); }

    IImageDecoder *pReal = nullptr;
    Gate gate;
};

/**
 * The host's plug-in manager as a plug-in may find it: with services missing, or with a slow decoder.
 *
 * Owner: the test; outlives the previews. Thread: GUI thread.
 */
class GatedServices final : public IPluginManager {
public:
    explicit GatedServices(IPluginManager *pReal);
    virtual ~GatedServices() = default;
    QList<IPlugin *> getPlugins(const QString &className) override;

    Gate &gate() { return m_decoder.gate; }
    QSet<QString> missing; ///< Class names that nobody serves.

private:
    IPluginManager *m_pReal;
    GatedDecoder m_decoder;
    FakeBaseModulePlugin m_baseModule;
};
