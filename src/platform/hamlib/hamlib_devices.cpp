#include "platform/hamlib/hamlib_devices.h"

#include <hamlib/rig.h>
#include <hamlib/rotator.h>

#include <algorithm>
#include <mutex>
#include <string>

namespace orv::platform {
namespace {

// Long enough for a slow serial rotator's answer, short enough that a
// device switched off is noticed within a poll or two.
constexpr const char* kTimeoutMs = "1500";

// Hamlib writes its trace to stderr unless told once not to; its backend
// registry is loaded once as well.
void initHamlib() {
    static std::once_flag once;
    std::call_once(once, [] {
        rig_set_debug(RIG_DEBUG_NONE);
        rig_load_all_backends();
        rot_load_all_backends();
    });
}

std::string failure(const char* what, int rc) {
    // rigerror() appends Hamlib's whole trace; the message alone is enough.
    return std::string(what) + ": " + rigerror2(rc);
}

void check(const char* what, int rc) {
    if (rc != RIG_OK)
        throw rig::DeviceError(failure(what, rc));
}

class HamlibRotator final : public rig::Rotator {
public:
    explicit HamlibRotator(rig::DeviceSettings s) : settings_(std::move(s)) {}
    ~HamlibRotator() override { close(); }

    void open() override {
        close();
        initHamlib();
        rot_ = rot_init(static_cast<rot_model_t>(settings_.model));
        if (!rot_)
            throw rig::DeviceError("rot_init: unknown model " + std::to_string(settings_.model));
        conf("rot_pathname", settings_.device);
        conf("timeout", kTimeoutMs);
        conf("retry", "0");
        if (settings_.speed > 0)
            conf("serial_speed", std::to_string(settings_.speed));
        const int rc = rot_open(rot_);
        if (rc != RIG_OK) {
            rot_cleanup(rot_);
            rot_ = nullptr;
            throw rig::DeviceError(failure("rot_open", rc));
        }
    }

    void close() override {
        if (!rot_)
            return;
        rot_close(rot_);
        rot_cleanup(rot_);
        rot_ = nullptr;
    }

    double position() override {
        azimuth_t az = 0;
        elevation_t el = 0;
        check("rot_get_position", rot_get_position(live(), &az, &el));
        return az;
    }

    void turnTo(double azimuth) override {
        // Elevation 0: a contest beam turns in azimuth only.
        check("rot_set_position", rot_set_position(live(), static_cast<azimuth_t>(azimuth), 0));
    }

    void stop() override { check("rot_stop", rot_stop(live())); }

private:
    ROT* live() {
        if (!rot_)
            throw rig::DeviceError("rotator not open");
        return rot_;
    }
    void conf(const char* name, const std::string& value) {
        if (value.empty())
            return;
        const token_t t = rot_token_lookup(rot_, name);
        if (t != RIG_CONF_END)
            rot_set_conf(rot_, t, value.c_str());
    }

    rig::DeviceSettings settings_;
    ROT* rot_ = nullptr;
};

class HamlibRig final : public rig::Rig {
public:
    explicit HamlibRig(rig::DeviceSettings s) : settings_(std::move(s)) {}
    ~HamlibRig() override { close(); }

    void open() override {
        close();
        initHamlib();
        rig_ = rig_init(static_cast<rig_model_t>(settings_.model));
        if (!rig_)
            throw rig::DeviceError("rig_init: unknown model " + std::to_string(settings_.model));
        conf("rig_pathname", settings_.device);
        conf("timeout", kTimeoutMs);
        conf("retry", "0");
        if (settings_.speed > 0)
            conf("serial_speed", std::to_string(settings_.speed));
        const int rc = rig_open(rig_);
        if (rc != RIG_OK) {
            rig_cleanup(rig_);
            rig_ = nullptr;
            throw rig::DeviceError(failure("rig_open", rc));
        }
        // Hamlib keeps what it read for half a second; the poll is the
        // program's own pace, and each poll wants the rig as it stands.
        rig_set_cache_timeout_ms(rig_, HAMLIB_CACHE_ALL, 0);
    }

    void close() override {
        if (!rig_)
            return;
        rig_close(rig_);
        rig_cleanup(rig_);
        rig_ = nullptr;
    }

    rig::RigReading read() override {
        if (!rig_)
            throw rig::DeviceError("rig not open");
        freq_t f = 0;
        check("rig_get_freq", rig_get_freq(rig_, RIG_VFO_CURR, &f));
        rmode_t mode = RIG_MODE_NONE;
        pbwidth_t width = 0;
        check("rig_get_mode", rig_get_mode(rig_, RIG_VFO_CURR, &mode, &width));
        return {static_cast<std::int64_t>(f + 0.5), rig_strrmode(mode)};
    }

private:
    void conf(const char* name, const std::string& value) {
        if (value.empty())
            return;
        const token_t t = rig_token_lookup(rig_, name);
        if (t != RIG_CONF_END)
            rig_set_conf(rig_, t, value.c_str());
    }

    rig::DeviceSettings settings_;
    RIG* rig_ = nullptr;
};

void sortModels(std::vector<HamlibModel>& v) {
    std::sort(v.begin(), v.end(), [](const HamlibModel& a, const HamlibModel& b) {
        return a.maker != b.maker ? a.maker < b.maker : a.name < b.name;
    });
}

int addRot(const rot_caps* caps, void* data) {
    static_cast<std::vector<HamlibModel>*>(data)->push_back(
        {static_cast<long long>(caps->rot_model), caps->mfg_name ? caps->mfg_name : "",
         caps->model_name ? caps->model_name : ""});
    return 1; // go on
}

int addRig(const rig_caps* caps, void* data) {
    static_cast<std::vector<HamlibModel>*>(data)->push_back(
        {static_cast<long long>(caps->rig_model), caps->mfg_name ? caps->mfg_name : "",
         caps->model_name ? caps->model_name : ""});
    return 1;
}

} // namespace

std::unique_ptr<rig::Rotator> makeHamlibRotator(const rig::DeviceSettings& settings) {
    return std::make_unique<HamlibRotator>(settings);
}

std::unique_ptr<rig::Rig> makeHamlibRig(const rig::DeviceSettings& settings) {
    return std::make_unique<HamlibRig>(settings);
}

std::vector<HamlibModel> hamlibRotatorModels() {
    initHamlib();
    std::vector<HamlibModel> v;
    rot_list_foreach(&addRot, &v);
    sortModels(v);
    return v;
}

std::vector<HamlibModel> hamlibRigModels() {
    initHamlib();
    std::vector<HamlibModel> v;
    rig_list_foreach(&addRig, &v);
    sortModels(v);
    return v;
}

} // namespace orv::platform
