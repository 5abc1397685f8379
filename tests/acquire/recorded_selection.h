// A view of the sensor selection dialog that shows nothing and keeps what it was told.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "acquire/sensor_selection/sensor_selection.h"
#include "platform/host/messages.h"

namespace zyr::test {

class RecordedSelection : public SensorSelectionView {
 public:
  bool Run(SensorSelection* dialog, platform::Window) override {
    ended.reset();
    dialog->OnInitDialog();
    if (ended) return *ended;
    wasSeen = true;
    if (user) user(*dialog);
    return ended.value_or(false);
  }
  platform::Window window() const override { return window_.window(); }
  void End(bool accepted) override { ended = accepted; }
  void SetColumns(const std::vector<std::string>& titles) override { columns = titles; }
  void SetMessage(const std::string& text, uint32_t newColor) override {
    message = text;
    color = newColor;
  }
  void SetMessageSecondColor(std::optional<uint32_t> newColor) override { secondColor = newColor; }
  void SetRows(const std::vector<SensorRow>& newRows) override {
    rows = newRows;
    selected.reset();
    ++fills;
  }
  void SetListVisible(bool visible) override { listVisible = visible; }
  void SelectRow(size_t row) override { selected = row; }
  std::optional<size_t> SelectedRow() const override { return selected; }

  std::function<void(SensorSelection&)> user;  // acts while the window stands
  bool wasSeen = false;
  std::optional<bool> ended;
  std::vector<std::string> columns;
  std::string message;
  uint32_t color = 0;
  std::optional<uint32_t> secondColor;
  std::vector<SensorRow> rows;
  int fills = 0;
  bool listVisible = true;
  std::optional<size_t> selected;

 private:
  platform::host::FakeWindow window_;
};

}  // namespace zyr::test
