#pragma once

#include "apps/qorview/MessageList.h"
#include "apps/qorview/Options.h"
#include "apps/qorview/PaneGrid.h"
#include "framework/model/EventConnection.h"
#include "framework/model/SelectionList.h"
#include "framework/model/Statistics.h"
#include "host/Camera.h"
#include "host/Importer.h"
#include "host/InputEvent.h"
#include "host/qt/SceneWidget.h"

#include <QMainWindow>

#include <memory>
#include <string>
#include <vector>

class QAction;
class QLabel;

namespace Qor::Chart::QorView {

/// The window that qorview opens: the files in one pane or several, to be looked at from all sides, with hovering,
/// selecting, a status line and a list of what went wrong.
class MainWindow : public QMainWindow {
public:
    /// Opens the window and gives the exit code when it has been closed.
    /// @throws Host::HostError when there is no display, no OpenGL, or a file cannot be used
    static int Run(Options const& p_options);

    explicit MainWindow(Options const& p_options);
    ~MainWindow() override;

    Host::SceneWidget& Widget() noexcept { return *_widget; }
    Model::SelectionList const& Selected() const noexcept { return *_selection; }

    /// Shows a file beside those that are there.
    /// @throws Library::ModelFileError when it cannot be used
    void Add(std::string const& p_file);
    /// Shows files, in place of those that are there or beside them. What cannot be used goes to the messages; when that
    /// is all of them, the old ones stay.
    void Open(std::vector<std::string> const& p_files, bool p_adds);
    /// Writes what the scene shows to a PNG file; failures go to the messages.
    void SavePicture(std::string const& p_file);

protected:
    void closeEvent(QCloseEvent* p_event) override;

private:
    void SetUpScene(Options const& p_options);
    void SetUpPanes(Options const& p_options);
    void Share(Host::Scene& p_scene);
    void Listen();
    void ListenTo(Host::SceneView& p_view);
    void MakeMenus();
    void MakeFileMenu();
    void MakeViewMenu();

    Core::Ptr<Model::ModelNode> Import(std::string const& p_file);
    void AskForFiles(bool p_adds);
    void AskForPicture();
    void SetProjection(Model::Pane::ProjectionMode p_mode);
    void ShowUnderPointer(std::string const& p_text);
    void ShowSelected();
    void ShowBounds(bool p_isOn);
    /// For a key that neither a node nor the navigator wants.
    bool PressKey(Host::InputEvent const& p_event);
    std::vector<Host::SceneView*> PopOuts() const;
    void ShowHelp();

    Host::SceneWidget* _widget; ///< the next four are children
    MessageList* _messages;
    QLabel* _underPointer;
    QLabel* _selected;
    std::unique_ptr<PaneGrid> _panes;
    std::shared_ptr<Host::Importer> _importer; ///< until the next frame has taken its files up
    Core::Ptr<Model::SelectionList> _selection; ///< the same in all windows
    Model::EventConnection _selectionChanges;
    bool _showsBounds; ///< in all windows
    Core::Ptr<Model::Statistics> _statistics; ///< the same in all windows
    QAction* _showsStatistics = nullptr; ///< a child
};

} // namespace Qor::Chart::QorView
