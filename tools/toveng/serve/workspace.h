#pragma once

#include <QJsonObject>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "serve/design_loader.h"
#include "serve/document.h"
#include "serve/document_analysis.h"
#include "serve/near_name_cache.h"
#include "serve/rpc.h"

namespace tool::lsp {

/// The capabilities of the client.
struct Client {
    /// Reads the parameters of "initialize".
    static Client of(QJsonObject const& params);

    Encoding encoding = Encoding::utf16;
    bool readsMarkdown = false;
    bool nestsSymbols = false;
    bool versionsEdits = false;    ///< accepts edits for a version of a document
    bool hasSettings = false;      ///< answers workspace/configuration
    bool reportsSettings = false;  ///< if asked to
    bool watchesFiles = false;     ///< if asked to
    bool knowsBasePaths = false;   ///< of the patterns of files to watch
    bool showsProgress = false;
};

/// A file in the set of each document.
struct SetFile {
    std::string path;
    std::string name;                ///< as written by the user
    std::vector<std::string> lines;  ///< UTF-8
    bool isRead = false;             ///< false: it could not be read
};

/// A document that the client has opened.
struct OpenDocument {
    QString uri;
    std::string path;  ///< empty if the document is not a file
    std::optional<qint64> version;
    Text text;
    bool isDirty = true;  ///< has changed since its diagnostics were sent
    /// The analysis of the text; null until requested.
    std::unique_ptr<DocumentAnalysis> analysis;
};

/// The state that the features use.
struct Workspace {
    Client client;
    DesignPtr design;          ///< null until it is loaded
    bool isDesignSet = false;  ///< it may not be loaded yet
    kiri::tov::TovNameMatch match = kiri::tov::TOVMATCH_LEVELS;
    CodeSet codes{true};  ///< codes of the findings that are shown
    std::vector<SetFile> files;
    std::map<QString, std::unique_ptr<OpenDocument>> documents;
    std::shared_ptr<NearNameCache> nearNames = std::make_shared<NearNameCache>();  ///< of the design

    /// Returns the document named by a request's "textDocument"; throws RpcError if it is not open.
    OpenDocument& documentIn(QJsonObject const& params) const;
    /// Returns the place of a request's position; throws RpcError if it is beyond the last line.
    Place placeIn(OpenDocument const& document, QJsonObject const& position) const;

    /// Returns the analysis of a document in its current state.
    DocumentAnalysis& analysisOf(OpenDocument& document) const;

    /// Returns text edits of a document as a workspace edit, with the document's version if the client supports it.
    QJsonObject edit(OpenDocument const& document, QJsonArray const& edits) const;

    QJsonObject range(OpenDocument const& document, Place start, Place end) const {
        return document.text.range(start, end, client.encoding);
    }
};

/// "file:///home/a.tov" as a path; empty for any other scheme.
std::string pathOf(QString const& uri);
QString uriOf(std::string const& path);

}  // namespace tool::lsp
