#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "core/reference/call_image.h"

namespace orv {

// Builds the image of the call database on a thread of its own, so that the
// window opens and takes keys while a large database loads. An image file
// beside the database with the database's stamp is mapped instead of the
// build; after a build the file is written anew on the same thread, once the
// image has been handed over. Destroying the loader stops the build or the
// write at its next check (a few thousand records, one sorting bucket or a
// megabyte away) without waiting for the rest of it.
class CallImageLoader {
public:
    struct Outcome {
        std::shared_ptr<const QBDatImage> image; // empty when the load failed
        std::string error;                       // why it failed
        bool fromFile = false;                   // mapped from the image file
    };
    // `done` runs on the loader's thread once, unless the loader is
    // destroyed first; it must only hand the outcome over to its own thread.
    // `beforeRead`, when given, runs on the loader's thread before anything
    // is read (tests hold the load there).
    CallImageLoader(std::filesystem::path dbPath, std::function<void(Outcome)> done,
                    std::function<void()> beforeRead = {});
    ~CallImageLoader();
    // Waits for the load, and the write of the image file after a build, to
    // end; `done` has run when this returns, unless the load was cancelled.
    void wait();
    CallImageLoader(const CallImageLoader&) = delete;
    CallImageLoader& operator=(const CallImageLoader&) = delete;

private:
    std::atomic<bool> stop_{false};
    std::jthread thread_;
};

} // namespace orv
