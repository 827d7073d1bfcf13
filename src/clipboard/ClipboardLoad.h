#pragma once

#include "clipboard/ClipboardItem.h"
#include "storage/OwnedFolder.h"
#include "storage/StoredList.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// Loading the stored clipboard history, worked out off the main thread so a long history never
// holds back the notch. One pass, newest first: a clip past the limit is let go before any work
// is spent on it, so a huge file costs its decoding and little more. Kept clips whose files are
// gone are left out, missing hashes are learned, twins are merged into the one copied last.
// A file holding far more than the limit is copied aside whole before anything is let go.
// The manager takes the result on the main thread and logs it there.
class ClipboardLoad {
public:
    // A file is copied aside whole when more clips are let go than this (or than the limit, if larger).
    static constexpr int kKeepWholeFloor = 100;

    struct Input {
        QString listPath;
        OwnedFolder images;
        int limit = 0;
        QDateTime now; // names the copy kept aside
    };
    // A kept picture clip whose hash could not be learned, and why.
    struct Hashless {
        ClipboardItem clip;
        QString why;
    };
    struct Result {
        StoredList::Read read;
        int skipped = 0;              // elements that did not decode
        int held = 0;                 // clips the file held
        QList<ClipboardItem> kept;    // newest first
        QList<ClipboardItem> leftOut; // their files are gone
        QList<Hashless> hashless;
        int learned = 0;
        QList<ClipboardItem> merged;        // held twice; folded into the one copied last
        QList<ClipboardItem> letGo;         // past the limit
        std::optional<QString> keptWholeAs; // the file's name aside, when it was far past the limit
        QString keepWholeFailure;           // why it could not be kept aside
        QStringList unlisted;               // names in the pictures folder that no kept clip lists

        // Whether the file on disk no longer matches what was kept.
        bool edited() const
        {
            return !leftOut.isEmpty() || learned > 0 || !merged.isEmpty() || !letGo.isEmpty();
        }
    };

    static Result run(const Input& input);
    static bool farPastLimit(qsizetype letGo, int limit);
};

} // namespace norva
