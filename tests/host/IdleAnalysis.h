#pragma once

#include "basemodule/IHostAnalysis.h"

#include <QImage>

/** An analysis that does nothing; tests say what is different. */
class IdleAnalysis : public IHostAnalysis {
public:
    virtual ~IdleAnalysis() = default;
    QImage readPicture(const QString & /*path*/, int /*nLongestSide*/, const std::atomic_bool & /*cancelled*/) override
    {
        return {};
    }
    FileMetadata readMetadata(const QString & /*path*/) override { return {}; }
    RenditionPaths renditionPaths(const QString & /*path*/, qint64 /*nSize*/, qint64 /*nModifiedMsec*/) override
    {
        return {};
    }
    void setFilesAhead(const QStringList & /*paths*/) override {}
    void setAheadBudget(qint64 /*nBytes*/) override {}
    void setFileShown(const QString & /*path*/) override {}
    void setProblemHandler(const ProblemHandler & /*handler*/) override {}
    AnalysisOutcome analyse(const QString & /*path*/, const std::atomic_bool & /*cancelled*/) override
    {
        return AnalysisOutcome::Impossible;
    }
    void setThumbnailDiskBudget(qint64 /*nBytes*/) override {}
    void shutdown() override {}
};
