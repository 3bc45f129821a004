#include "core/reference/call_image_loader.h"

namespace orv {

CallImageLoader::CallImageLoader(std::filesystem::path dbPath, std::function<void(Outcome)> done,
                                 std::function<void()> beforeRead)
    : thread_(
          [this, path = std::move(dbPath), done = std::move(done), before = std::move(beforeRead)] {
              if (before)
                  before();
              Outcome out;
              try {
                  out.image = std::make_shared<const QBDatImage>(QBDatImage::load(path, &stop_));
              } catch (const QBDatImage::Cancelled&) {
                  return;
              } catch (const std::exception& e) {
                  out.error = e.what();
              }
              if (!stop_.load())
                  done(std::move(out));
          }) {}

void CallImageLoader::wait() {
    if (thread_.joinable())
        thread_.join();
}

CallImageLoader::~CallImageLoader() {
    stop_.store(true);
}

} // namespace orv
