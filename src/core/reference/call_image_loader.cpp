#include "core/reference/call_image_loader.h"

#include <system_error>

#include "core/reference/call_image_file.h"
#include "core/util/sqlite.h"

namespace orv {
namespace fs = std::filesystem;

namespace {

// The stamp the database has now; empty when there is no database, no
// table or no stamp yet (the load then reads the table and adds one).
std::optional<std::int64_t> currentStamp(const fs::path& dbPath) {
    std::error_code ec;
    if (!fs::exists(dbPath, ec))
        return std::nullopt;
    try {
        sql::Db db(dbPath.string(), sql::Db::Mode::ReadOnly);
        return callDbStamp(db);
    } catch (const sql::Error&) {
        return std::nullopt;
    }
}

} // namespace

CallImageLoader::CallImageLoader(fs::path dbPath, std::function<void(Outcome)> done,
                                 std::function<void()> beforeRead)
    : thread_(
          [this, path = std::move(dbPath), done = std::move(done), before = std::move(beforeRead)] {
              if (before)
                  before();
              const fs::path imageFile = callImagePath(path);
              Outcome out;
              std::shared_ptr<const QBDatImage> built;
              try {
                  auto stamp = currentStamp(path);
                  if (!stamp) {
                      // A database of an older version: the stamp from now on.
                      addCallDbStamp(path);
                  } else {
                      auto opened = CallImageFile::open(imageFile, *stamp);
                      out.image = std::move(opened.image);
                      out.fromFile = out.image != nullptr;
                  }
                  if (!out.image)
                      out.image = built =
                          std::make_shared<const QBDatImage>(QBDatImage::load(path, &stop_));
              } catch (const QBDatImage::Cancelled&) {
                  return;
              } catch (const std::exception& e) {
                  out.image.reset();
                  out.error = e.what();
              }
              if (stop_.load())
                  return;
              done(std::move(out));
              // The file for the next start, written while the window already
              // searches this image. It is only a copy: a failure to write it
              // costs the next start the build, nothing else.
              if (built && built->stamp()) {
                  try {
                      CallImageFile::write(*built, imageFile, &stop_);
                  } catch (...) {
                  }
              }
          }) {}

void CallImageLoader::wait() {
    if (thread_.joinable())
        thread_.join();
}

CallImageLoader::~CallImageLoader() {
    stop_.store(true);
}

} // namespace orv
