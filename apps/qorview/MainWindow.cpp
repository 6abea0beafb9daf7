#include "apps/qorview/MainWindow.h"

#include "apps/qorview/NodeText.h"
#include "apps/qorview/PictureFile.h"
#include "framework/model/Events.h"
#include "host/HostError.h"
#include "host/qt/SceneWindow.h"
#include "host/qt/SurfaceFormat.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <utility>

namespace Qor::Chart::QorView {

namespace {

using Host::InputCallbacks;
using Host::InputEvent;
using Host::SceneView;
using View = Host::Camera::View;

constexpr std::array<std::pair<View, char const*>, 7> Views{
    {{View::Front, "Front"}, {View::Back, "Back"}, {View::Left, "Left"}, {View::Right, "Right"}, {View::Top, "Top"},
        {View::Bottom, "Bottom"}, {View::Isometric, "From a corner"}}};

constexpr char const* HelpText =
    "<h3>Looking around</h3><table cellspacing=4>"
    "<tr><td><b>Drag</b></td><td>turns the scene</td></tr>"
    "<tr><td><b>Shift + drag</b>, middle button</td><td>moves it</td></tr>"
    "<tr><td><b>Wheel</b>, secondary button up or down</td><td>zooms about the pointer</td></tr>"
    "<tr><td><b>F</b></td><td>fits everything into the pane</td></tr>"
    "<tr><td><b>1</b> to <b>7</b></td><td>front, back, left, right, top, bottom, from a corner</td></tr>"
    "<tr><td><b>O</b>, <b>P</b></td><td>without perspective, with it</td></tr></table>"
    "<h3>Selecting</h3><table cellspacing=4>"
    "<tr><td><b>Click</b></td><td>selects what is under the pointer; beside everything: nothing</td></tr>"
    "<tr><td><b>Ctrl + click</b></td><td>selects it as well, or no longer</td></tr>"
    "<tr><td><b>Shift + click</b></td><td>selects it as well</td></tr>"
    "<tr><td><b>Alt + click</b></td><td>selects the next thing behind, one click after the other</td></tr>"
    "<tr><td><b>Ctrl + drag</b></td><td>selects what lies in a rectangle</td></tr>"
    "<tr><td><b>Ctrl + Shift + drag</b></td><td>selects that as well</td></tr>"
    "<tr><td><b>Esc</b></td><td>takes a drag back; selects nothing</td></tr></table>"
    "<h3>Panes (with --panes 2x2 and the like)</h3><table cellspacing=4>"
    "<tr><td><b>Title bar</b>, corners</td><td>drag them to move and resize a pane</td></tr>"
    "<tr><td><b>Buttons in the title bar</b></td><td>show its content in a window of its own</td></tr></table>"
    "<h3>Figures</h3><table cellspacing=4>"
    "<tr><td><b>S</b></td><td>shows frames a second, the time of each stage, draw calls and memory, or hides "
    "them</td></tr></table>"
    "<h3>Files</h3><table cellspacing=4>"
    "<tr><td><b>Ctrl + O</b>, drop a file</td><td>opens it</td></tr>"
    "<tr><td><b>Ctrl + Shift + O</b></td><td>shows it beside the others</td></tr>"
    "<tr><td><b>Ctrl + S</b></td><td>saves the picture as PNG</td></tr>"
    "<tr><td><b>F1</b></td><td>shows this list</td></tr></table>";

constexpr char const* NoWindow = "No window can be opened, because ";
constexpr char const* Instead = "; give --png OUT to write a picture instead.";

bool Has(char const* p_variable) {
    char const* const value = std::getenv(p_variable);
    return value && *value;
}

/// While the toolkit starts it says at length what is missing, and ends the program when that is the display.
void WhileStarting(QtMsgType p_type, QMessageLogContext const&, QString const&) {
    if (p_type != QtFatalMsg)
        return;
    std::cerr << "qorview: " << NoWindow << "the display cannot be used" << Instead << std::endl;
    std::_Exit(1);
}

} // namespace

int MainWindow::Run(Options const& p_options) {
    if (!Has("DISPLAY") && !Has("WAYLAND_DISPLAY") && !Has("QT_QPA_PLATFORM"))
        throw Host::HostError(std::string(NoWindow) + "there is no display" + Instead);
    int count = 1;
    std::string name = "qorview";
    std::array<char*, 2> words{name.data(), nullptr};
    QtMessageHandler const before = qInstallMessageHandler(&WhileStarting);
    QApplication const application(count, words.data());
    std::string const& why = Host::WhyNoOpenGl();
    qInstallMessageHandler(before);
    if (!why.empty())
        throw Host::HostError(NoWindow + why + Instead);

    MainWindow window(p_options);
    for (std::string const& file : p_options.files)
        window.Add(file);
    window.show();
    return QApplication::exec();
}

MainWindow::MainWindow(Options const& p_options)
    : _widget(new Host::SceneWidget(this))
    , _messages(new MessageList(this))
    , _underPointer(new QLabel(this))
    , _selected(new QLabel(this))
    , _selection(Core::MakeNode<Model::SelectionList>())
    , _showsBounds(p_options.bounds)
    , _statistics(Core::MakeNode<Model::Statistics>()) {
    setWindowTitle("qorview");
    QSurfaceFormat format = Host::SceneSurfaceFormat();
    format.setSamples(p_options.samples);
    _widget->setFormat(format);
    setCentralWidget(_widget);
    addDockWidget(::Qt::BottomDockWidgetArea, _messages);
    statusBar()->addWidget(_underPointer, 1);
    statusBar()->addPermanentWidget(_selected);
    SetUpScene(p_options);
    SetUpPanes(p_options);
    _statistics->SetVisible(p_options.statistics);
    Listen();
    MakeMenus();
    ShowSelected();
    resize(QSize(p_options.size.width, p_options.size.height).boundedTo(screen()->availableSize()));
    _widget->setFocus();
}

// The scene and its windows go while everything that they tell of is still there.
MainWindow::~MainWindow() {
    delete _widget;
}

void MainWindow::SetUpScene(Options const& p_options) {
    SceneView& view = _widget->View();
    Types::Schema& schema = view.GetScene().Schema();
    schema.clearColor = p_options.background;
    schema.pointSize = 5;
    schema.lineWidth = 1.5F;
    view.Driver().SetShowBounds(_showsBounds);
    view.GetCamera().SetUpAxis(p_options.up);
}

/// One pane alone fills the window and stays there; several have titles and can be moved about.
void MainWindow::SetUpPanes(Options const& p_options) {
    Options options = p_options;
    bool const isAlone = !options.panes;
    if (isAlone)
        options.panes = Types::Size(1, 1);
    Host::Scene& scene = _widget->View().GetScene();
    _panes = std::make_unique<PaneGrid>(scene, options);
    Share(scene);
    for (Core::Ptr<Model::ModelNode> const& camera : *scene.Model()) {
        for (Core::Ptr<Model::ModelNode> const& child : *camera) {
            auto const pane = Core::DynamicCast<Model::Pane>(child);
            if (!pane)
                continue;
            pane->SetBackgroundPickable(true);
            pane->SetToolbarShown(true);
            pane->SetButtonsShown(!isAlone);
            if (!isAlone)
                continue;
            pane->SetMovable(false);
            pane->SetResizable(false);
            pane->SetTitle(L"");
            pane->SetBorderColor(QColor(0, 0, 0, 0));
        }
    }
}

/// All windows show one selection and the same figures.
void MainWindow::Share(Host::Scene& p_scene) {
    p_scene.Add(_statistics);
    p_scene.Add(_selection);
}

void MainWindow::Listen() {
    SceneView& view = _widget->View();
    using Changed = Model::Events::SelectionChangedArgs;
    _selectionChanges = _selection->Delegate().Connect<Changed>([this](Changed const&) { ShowSelected(); });
    ListenTo(view);
    view.SetPopOutCallback([this](SceneView& p_view) {
        p_view.Driver().SetShowBounds(_showsBounds);
        Share(p_view.GetScene());
        ListenTo(p_view);
    });
    view.SetFilesCallback([this](std::vector<std::string> const& p_files) { Open(p_files, false); });
}

/// What holds for the window holds for those that content of panes is taken into.
void MainWindow::ListenTo(SceneView& p_view) {
    SceneView* const view = &p_view;
    InputCallbacks& callbacks = p_view.Input().Callbacks();
    callbacks.hover = [this](
                          Render::SelectRecord const& p_record) { ShowUnderPointer(NameInTree(p_record.Selection())); };
    callbacks.endHover = [this](auto const&) { ShowUnderPointer({}); };
    p_view.SetErrorCallback([this](std::string const& p_sentence) { _messages->Show(p_sentence); });
    p_view.SetKeyCallback([this](InputEvent const& p_event) { return PressKey(p_event); });
    p_view.SetFrameCallback([this, view, taken = std::uint64_t{0}]() mutable {
        if (view == &_widget->View())
            _importer.reset();
        _messages->Follow(view->GetScene().Dispatcher(), taken);
    });
}

void MainWindow::MakeMenus() {
    MakeFileMenu();
    MakeViewMenu();
    QMenu* const help = menuBar()->addMenu("&Help");
    help->addAction("&Keys and mouse", QKeySequence(QKeySequence::HelpContents), this, [this] { ShowHelp(); });
}

void MainWindow::MakeFileMenu() {
    QMenu* const file = menuBar()->addMenu("&File");
    file->addAction("&Open...", QKeySequence(QKeySequence::Open), this, [this] { AskForFiles(false); });
    file->addAction("&Add...", QKeySequence("Ctrl+Shift+O"), this, [this] { AskForFiles(true); });
    file->addAction("&Save picture...", QKeySequence(QKeySequence::Save), this, [this] { AskForPicture(); });
    file->addSeparator();
    file->addAction("&Quit", QKeySequence("Ctrl+Q"), this, [this] { close(); });
}

/// The keys behind the tabs are those of the view itself: as shortcuts they would not know the pane under the pointer.
void MainWindow::MakeViewMenu() {
    QMenu* const menu = menuBar()->addMenu("&View");
    SceneView& view = _widget->View();
    menu->addAction("&Fit\tF", this, [&view] { view.GetNavigator().Fit(view.ActiveView()); });
    menu->addAction("Fit &all panes", this, [&view] { view.FitAll(); });
    menu->addSeparator();
    int number = 0;
    for (auto const& [direction, name] : Views) {
        menu->addAction(QString("%1\t%2").arg(name).arg(++number), this,
            [&view, direction = direction] { view.GetNavigator().Look(view.ActiveView(), direction); });
    }
    menu->addSeparator();
    using Mode = Model::Pane::ProjectionMode;
    menu->addAction("&Perspective\tP", this, [this] { SetProjection(Mode::Perspective); });
    menu->addAction("&Orthographic\tO", this, [this] { SetProjection(Mode::Orthographic); });
    menu->addSeparator();
    QAction* const bounds = menu->addAction("&Boxes of all nodes");
    bounds->setCheckable(true);
    bounds->setChecked(_showsBounds);
    connect(bounds, &QAction::toggled, this, [this](bool p_isOn) { ShowBounds(p_isOn); });
    _showsStatistics = menu->addAction("&Statistics\tS");
    _showsStatistics->setCheckable(true);
    _showsStatistics->setChecked(_statistics->IsVisible());
    connect(_showsStatistics, &QAction::toggled, this, [this](bool p_isOn) { _statistics->SetVisible(p_isOn); });
    menu->addAction(_messages->toggleViewAction());
}

Core::Ptr<Model::ModelNode> MainWindow::Import(std::string const& p_file) {
    if (!_importer)
        _importer = std::make_shared<Host::Importer>(_widget->View().GetScene().Symbols());
    std::shared_ptr<Host::Importer> const importer = _importer; // telling how far it is may make a frame
    QString const name = QFileInfo(QString::fromStdString(p_file)).fileName();
    int shown = 0;
    Host::Importer::Result const result = importer->Import(p_file, [&](double p_part) {
        constexpr int step = 5;
        int const percent = static_cast<int>(100 * p_part);
        if (percent >= shown + step) {
            shown = percent;
            _underPointer->setText(QString("Reading %1: %2 %").arg(name).arg(percent));
            _underPointer->repaint();
        }
        return true;
    });
    _underPointer->clear();
    if (result.dropped > 0)
        _messages->Show("The file \"" + p_file + "\" has " + std::to_string(result.dropped) +
            " parts with numbers that cannot be drawn; they are left out.");
    return result.root;
}

void MainWindow::Add(std::string const& p_file) {
    _panes->Content().Add(Import(p_file));
    setWindowTitle(QFileInfo(QString::fromStdString(p_file)).fileName() + " - qorview");
    _widget->View().FitAll();
}

void MainWindow::Open(std::vector<std::string> const& p_files, bool p_adds) {
    std::vector<Core::Ptr<Model::ModelNode>> roots;
    QApplication::setOverrideCursor(::Qt::WaitCursor);
    for (std::string const& file : p_files) {
        try {
            roots.push_back(Import(file));
            setWindowTitle(QFileInfo(QString::fromStdString(file)).fileName() + " - qorview");
        } catch (std::exception const& error) {
            _messages->Show(error.what());
        }
    }
    QApplication::restoreOverrideCursor();
    _underPointer->clear();
    if (roots.empty())
        return;
    if (!p_adds) {
        _selection->DeselectAll();
        _panes->Content().Clear();
    }
    for (Core::Ptr<Model::ModelNode> const& root : roots)
        _panes->Content().Add(root);
    _widget->View().FitAll();
    for (SceneView* const view : PopOuts())
        view->FitAll();
}

void MainWindow::AskForFiles(bool p_adds) {
    std::vector<std::string> files;
    for (QString const& file : QFileDialog::getOpenFileNames(this, p_adds ? "Add files" : "Open files"))
        files.push_back(file.toStdString());
    if (!files.empty())
        Open(files, p_adds);
}

void MainWindow::AskForPicture() {
    QString file = QFileDialog::getSaveFileName(this, "Save picture", "qorview.png", "PNG pictures (*.png)");
    if (file.isEmpty())
        return;
    if (QFileInfo(file).suffix().isEmpty())
        file += ".png";
    SavePicture(file.toStdString());
}

void MainWindow::SavePicture(std::string const& p_file) {
    try {
        PictureFile(p_file).Write(_widget->grabFramebuffer());
        _underPointer->setText(QString("Saved %1.").arg(QString::fromStdString(p_file)));
    } catch (std::exception const& error) {
        _messages->Show(error.what());
    }
}

void MainWindow::SetProjection(Model::Pane::ProjectionMode p_mode) {
    Core::Ptr<Render::Vis> const vis = _widget->View().ActiveView().pane.Lock();
    if (auto const pane = Core::DynamicCast<Model::Pane>(vis ? vis->SourceModel().Lock() : nullptr))
        pane->SetProjectionMode(p_mode);
}

void MainWindow::ShowUnderPointer(std::string const& p_text) {
    _underPointer->setText(QString::fromStdString(p_text));
}

void MainWindow::ShowSelected() {
    _selected->setText(QString::fromStdString(SelectionText(*_selection)));
}

void MainWindow::ShowBounds(bool p_isOn) {
    _showsBounds = p_isOn;
    std::vector<SceneView*> views = PopOuts();
    views.push_back(&_widget->View());
    for (SceneView* const view : views) {
        view->Driver().SetShowBounds(p_isOn);
        view->Refresh();
    }
}

bool MainWindow::PressKey(InputEvent const& p_event) {
    constexpr int statistics = 'S';
    if (p_event.key != statistics || p_event.modifiers != 0)
        return false;
    _showsStatistics->toggle();
    return true;
}

std::vector<SceneView*> MainWindow::PopOuts() const {
    std::vector<SceneView*> views;
    for (Host::SceneWindow* const window : _widget->View().PopOuts().Windows())
        views.push_back(&window->View());
    return views;
}

void MainWindow::ShowHelp() {
    auto* const box = new QMessageBox(QMessageBox::NoIcon, "Keys and mouse", HelpText, QMessageBox::Close, this);
    box->setAttribute(::Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

void MainWindow::closeEvent(QCloseEvent* p_event) {
    _widget->View().ClosePopOuts();
    QMainWindow::closeEvent(p_event);
}

} // namespace Qor::Chart::QorView
