#pragma once
// An editable list of the serial devices the system knows, for the setup
// dialogs: the operator picks one or types any path (a stable
// /dev/serial/by-id/ name, say).

#include <QComboBox>
#include <string>

namespace zelvan {

class DeviceChooser : public QComboBox {
  public:
    explicit DeviceChooser(QWidget* parent = nullptr);
    // Paths are code-page text, like every value of the settings store.
    // Shows a path, listed or not.
    void setPath(const std::string& path);
    // The path as chosen or typed, without surrounding blanks.
    std::string path() const;
    // The line settings mean nothing to a network device: while the entry
    // names one, these fields stay, with their values, but can't be changed.
    void disableForNetwork(const QList<QWidget*>& serialFields);
};

}  // namespace zelvan
