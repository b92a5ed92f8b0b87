// The audio side of the dialog: a player of wave files, the engine, the device and its menu.
//
// All on the host's thread. The window is up from the message initDialog to the message destroy,
// which stops the engine and frees the device.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "device/WaveDevice.h"
#include "stream/StreamEngine.h"
#include "tuning/WavePlayer.h"
#include "ui/DialogHost.h"
#include "ui/RecentFiles.h"

namespace tonvane {

// An entry of the "Wave Device" menu.
struct DeviceChoice {
    int id;  // 200 for the default device, then without gaps
    std::string name;
    std::function<std::unique_ptr<CWaveDevice>()> make;  // null when the device cannot be had
};

class CWaveDlg : public StreamNotify {
  public:
    // All outlive the dialog.
    CWaveDlg(DialogHost& dialogHost, MeasurementConfig& measurement,
             std::vector<DeviceChoice> devices, UserStore& store);
    ~CWaveDlg() override;
    CWaveDlg(const CWaveDlg&) = delete;
    CWaveDlg& operator=(const CWaveDlg&) = delete;

    // Handles a message; the answer, nothing if the default handling is to follow.
    virtual std::optional<std::intptr_t> ProcessWindowMessage(const DialogMessage& m);

    // Makes a file the current one and puts it on top of the recent ones.
    void OpenWaveFile(const std::string& path);

    // StreamNotify.
    void postCaptureDone(bool complete) override;
    void postStatus() override;
    void showError(const std::string& text) override;

    DialogHost& host;
    CStreamEngine engine;
    WavePlayer player{engine};

  protected:
    // At the end of the initialisation; on destruction; after a file was opened.
    virtual void OnAttachStages() {}
    virtual void OnDetachStages() {}
    virtual void OnFileOpened() {}

    void StopPlaying();

    // Brings buttons, list and slider in line with the engine.
    void RefreshPlayer();

    // Ends the window and the message loop.
    void leave(int exitCode);

  private:
    using Row = MessageRow<CWaveDlg>;
    static const std::span<const Row> rows;

    void InitPlayer(const DialogMessage& m);
    void ClosePlayer(const DialogMessage& m);
    void OnPlayTimer(const DialogMessage& m);
    void OnSliderMoved(const DialogMessage& m);
    void OnDropFiles(const DialogMessage& m);
    void OnSystemCommand(const DialogMessage& m);
    void OnCaptureDone(const DialogMessage& m);
    void OnPathChange(const DialogMessage& m);
    void OnPlay(const DialogMessage& m);
    void OnStop(const DialogMessage& m);
    void OnCancel(const DialogMessage& m);

    void SelectDevice(int id);
    void ShowTime(int32_t quarters);
    void rewindSlider();

    std::vector<DeviceChoice> devices_;
    UserStore& store_;
    CPathComboBox pathList_;
    int selectedDevice_ = 0;  // menu id
    std::unique_ptr<CWaveDevice> device_;
};

}  // namespace tonvane
