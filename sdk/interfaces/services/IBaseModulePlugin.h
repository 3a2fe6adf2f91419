#pragma once

#include <QSharedPointer>
#include <QtPlugin>

class IImageDecoder;
class IPresentationRenderer;
class ITSCacheManager;

/** The host's base module: thumbnails, decoder, page renderer. The position of operation 1 is fixed. GUI thread only.
 */
class IBaseModulePlugin {
public:
    /** 1: the thumbnail cache; null when the host has none. */
    virtual QSharedPointer<ITSCacheManager> cacheManager() = 0;

    /** 2: the picture decoder, owned by the plug-in; null: previews show placeholders. */
    virtual IImageDecoder *imageDecoder() = 0;

    /** 3: the page renderer, owned by the plug-in; null: presentations show placeholders. */
    virtual IPresentationRenderer *presentationRenderer() = 0;

protected:
    ~IBaseModulePlugin() = default;
};

Q_DECLARE_INTERFACE(IBaseModulePlugin, "Tessaro.Plugin.IBaseModulePlugin/1.0")
