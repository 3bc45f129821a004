#pragma once

#include "core/keying/beacon.h"
#include "core/remote/remote_link.h"

namespace orv::ui {

// The beacon as the remote control reads and presses it. Other programs read
// the state as the described captions, whatever language the button shows.
class BeaconRemotePort final : public remote::BeaconPort {
public:
    explicit BeaconRemotePort(keying::BeaconControl& beacon) : beacon_(beacon) {}
    std::string state() const override {
        switch (beacon_.state()) {
        case keying::BeaconCaption::OnAir:
            return "OnAir";
        case keying::BeaconCaption::Pause:
            return "On-Air";
        case keying::BeaconCaption::Idle:
            break;
        }
        return "Bake Ein";
    }
    void press() override { beacon_.press(); }

private:
    keying::BeaconControl& beacon_;
};

} // namespace orv::ui
