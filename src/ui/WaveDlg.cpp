#include "ui/WaveDlg.h"

#include <algorithm>
#include <array>
#include <climits>
#include <utility>

#include "ui/Controls.h"

namespace tonvane {

namespace {

constexpr int playTimer = 1;
constexpr int playTimerMs = 125;
constexpr int32_t unknownTime = -1;

}  // namespace

const std::span<const CWaveDlg::Row> CWaveDlg::rows = [] {
    using namespace controls;
    using namespace notifications;
    static constexpr std::array table{
        Row{message::timer, playTimer, playTimer, anyCode, &CWaveDlg::OnPlayTimer},
        Row{message::initDialog, dialog, dialog, anyCode, &CWaveDlg::InitPlayer},
        Row{message::destroy, dialog, dialog, anyCode, &CWaveDlg::ClosePlayer},
        Row{message::dropFiles, dialog, dialog, anyCode, &CWaveDlg::OnDropFiles},
        Row{message::sliderMoved, position, position, anyCode, &CWaveDlg::OnSliderMoved},
        Row{message::systemCommand, deviceFirst, deviceLast, anyCode, &CWaveDlg::OnSystemCommand},
        Row{message::captureDone, INT_MIN, INT_MAX, anyCode, &CWaveDlg::OnCaptureDone, Then::stop,
            1},
        Row{message::command, path, path, selectionChange, &CWaveDlg::OnPathChange},
        Row{message::command, play, play, anyCode, &CWaveDlg::OnPlay},
        Row{message::command, controls::stop, controls::stop, anyCode, &CWaveDlg::OnStop},
        Row{message::command, cancel, cancel, anyCode, &CWaveDlg::OnCancel},
    };
    return std::span<const Row>(table);
}();

CWaveDlg::CWaveDlg(DialogHost& dialogHost, MeasurementConfig& measurement,
                   std::vector<DeviceChoice> devices, UserStore& store)
    : host(dialogHost),
      engine(measurement),
      devices_(std::move(devices)),
      store_(store),
      pathList_(dialogHost, controls::path) {}

CWaveDlg::~CWaveDlg() {
    engine.Stop();
    engine.SetDevice(nullptr);
}

std::optional<std::intptr_t> CWaveDlg::ProcessWindowMessage(const DialogMessage& m) {
    return Dispatch(*this, rows, m);
}

void CWaveDlg::postCaptureDone(bool complete) {
    if (host.isWindow()) {
        host.post({.message = message::captureDone, .lParam = complete ? 1 : 0});
    }
}

void CWaveDlg::postStatus() {
    if (host.isWindow()) {
        host.post({.message = message::status, .lParam = message::byWorker});
    }
}

void CWaveDlg::showError(const std::string& text) {
    host.showMessage({MessageBox::Kind::error, text, "Error"});
}

void CWaveDlg::InitPlayer(const DialogMessage& /*m*/) {
    engine.status.notifyWindow = this;
    host.placeWindow();
    for (const DeviceChoice& choice : devices_) {
        host.addDeviceEntry(choice.id, choice.name);
    }
    SelectDevice(controls::deviceFirst);

    auto recent = ReadRecentFiles(store_);
    std::ranges::reverse(recent);  // the newest ends on top
    for (const std::string& path : recent) {
        pathList_.AddPath(path);
    }
    const std::string selected = pathList_.selected();
    if (selected.empty()) {
        host.setSliderRange(controls::position, 0);
    } else {
        OpenWaveFile(selected);
    }
    OnAttachStages();
    StopPlaying();
}

void CWaveDlg::ClosePlayer(const DialogMessage& /*m*/) {
    engine.Stop();
    engine.SetDevice(nullptr);
    device_.reset();
    OnDetachStages();
    WriteRecentFiles(store_, pathList_.paths());
}

void CWaveDlg::OpenWaveFile(const std::string& path) {
    StopPlaying();
    pathList_.AddPath(path);
    const bool opened = player.OpenWaveFile(path);
    host.setSliderRange(controls::position, player.rangeQuarters);
    ShowTime(opened ? 0 : unknownTime);
    rewindSlider();
    OnFileOpened();
    RefreshPlayer();
}

void CWaveDlg::ShowTime(int32_t quarters) {
    host.setText(controls::time, WavePlayer::PositionText(quarters) + player.durationText);
}

void CWaveDlg::rewindSlider() {
    if (!host.isTracking(controls::position)) {
        host.setSliderPosition(controls::position, 0);
    }
}

void CWaveDlg::RefreshPlayer() {
    const bool active = player.isActive();
    host.setText(controls::play, active && !engine.paused ? "||" : "|>");
    pathList_.enable(!active);
    host.enable(controls::position, player.rangeQuarters != 0);
    for (const DeviceChoice& choice : devices_) {
        host.enableDeviceEntry(choice.id, !active);
    }
}

void CWaveDlg::StopPlaying() {
    player.Stop();
    RefreshPlayer();
    host.stopTimer(playTimer);
    ShowTime(0);
    rewindSlider();
}

void CWaveDlg::OnPlay(const DialogMessage& /*m*/) {
    const bool starts = !player.isActive();
    if (player.Play() && starts) {
        host.startTimer(playTimer, playTimerMs);
    }
    RefreshPlayer();
}

void CWaveDlg::OnStop(const DialogMessage& /*m*/) {
    StopPlaying();
}

void CWaveDlg::OnCaptureDone(const DialogMessage& /*m*/) {
    StopPlaying();
}

void CWaveDlg::OnPathChange(const DialogMessage& /*m*/) {
    OpenWaveFile(pathList_.selected());
}

void CWaveDlg::OnDropFiles(const DialogMessage& m) {
    OpenWaveFile(m.text);
}

void CWaveDlg::OnPlayTimer(const DialogMessage& /*m*/) {
    if (player.isActive() && !engine.paused && !host.isTracking(controls::position)) {
        const int32_t quarters = player.PositionQuarters();
        host.setSliderPosition(controls::position, quarters);
        ShowTime(quarters);
    }
}

void CWaveDlg::OnSliderMoved(const DialogMessage& m) {
    const int32_t quarters = host.sliderPosition(controls::position);
    ShowTime(quarters);
    if (m.code == notifications::endTrack) {
        player.Seek(quarters);
    }
}

void CWaveDlg::OnSystemCommand(const DialogMessage& m) {
    SelectDevice(m.id);
}

void CWaveDlg::SelectDevice(int id) {
    engine.Stop();
    engine.SetDevice(nullptr);
    device_.reset();
    selectedDevice_ = id;
    const auto choice =
        std::ranges::find_if(devices_, [&](const DeviceChoice& c) { return c.id == id; });
    if (choice != devices_.end()) {
        device_ = choice->make();
        if (!device_) {
            showError("Failed to load audio device: " + choice->name);
        }
    }
    host.selectDeviceEntry(id);
    engine.SetDevice(device_.get());
}

void CWaveDlg::leave(int exitCode) {
    host.destroyWindow();
    host.postQuit(exitCode);
}

void CWaveDlg::OnCancel(const DialogMessage& /*m*/) {
    leave(controls::cancel);
}

}  // namespace tonvane
