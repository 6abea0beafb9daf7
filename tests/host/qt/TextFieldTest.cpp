#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/TextBox.h"
#include "host/qt/SceneWidget.h"
#include "host/qt/SceneWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QTest>
#include <gmock/gmock.h>

namespace Qor::Chart::Host {
namespace {

/// A window with a scene of 300 by 200 pixels, in which a field of 100 by 20 lies at (20, 30), beside a field of the
/// toolkit's.
struct TextFieldTest : testing::Test {
    void SetUp() override {
        if (!qApp)
            GTEST_SKIP() << "There is no display, and Xvfb, which would make one, is not installed; run scripts/setup.";
        box->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 20});
        box->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, 30});
        box->SetWidth(100);
        box->SetHeight(20);
        pane->Add(box);
        model->Add(pane);
        auto* const layout = new QHBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        scene = new SceneWidget;
        scene->setFixedSize(300, 200);
        layout->addWidget(scene);
        layout->addWidget(other = new QLineEdit);
        scene->View().SetModel(model);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::qWait(100);
    }
    void Click() const {
        QTest::mouseClick(scene, Qt::LeftButton, {}, {30, 160});
        QTest::qWait(100);
    }

    Core::Ptr<Model::SceneGraph> model = Core::MakeNode<Model::SceneGraph>();
    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::TextBox> box = Core::MakeNode<Model::TextBox>(L"", Model::TextBox::Mode::Editable);
    QWidget window;
    SceneWidget* scene = nullptr;
    QLineEdit* other = nullptr;
};

TEST_F(TextFieldTest, takesKeysShortcutsClipboardAndInputMethods) {
    int copies = 0;
    int saves = 0;
    QShortcut copy(QKeySequence::Copy, &window);
    QShortcut letter(QKeySequence(Qt::Key_O), &window);
    QShortcut save(QKeySequence::Save, &window);
    QShortcut menu(QKeySequence(Qt::ALT | Qt::Key_M), &window);
    QObject::connect(&copy, &QShortcut::activated, [&] { ++copies; });
    QObject::connect(&letter, &QShortcut::activated, [&] { ++copies; });
    QObject::connect(&save, &QShortcut::activated, [&] { ++saves; });
    QObject::connect(&menu, &QShortcut::activated, [&] { ++saves; });
    pane->SetProjectionMode(Model::Pane::ProjectionMode::Perspective);

    EXPECT_FALSE(scene->testAttribute(Qt::WA_InputMethodEnabled));
    Click();
    EXPECT_TRUE(scene->testAttribute(Qt::WA_InputMethodEnabled));
    EXPECT_TRUE(scene->inputMethodQuery(Qt::ImEnabled).toBool());
    QRectF const caret = scene->inputMethodQuery(Qt::ImCursorRectangle).toRectF();
    EXPECT_TRUE(QRectF(20, 150, 100, 20).contains(caret)) << "from the upper left corner";

    QTest::keyClicks(scene, "oO(.");
    QTest::keyClick(scene, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier);
    QTest::keyEvent(QTest::Click, scene, '@', Qt::ControlModifier | Qt::AltModifier);
    QTest::keyClick(scene, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(scene, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(scene, Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(scene, Qt::Key_M, Qt::AltModifier);
    QString const copied = QApplication::clipboard()->text();
    EXPECT_TRUE(copied.startsWith("oO(.")) << copied.toStdString();
    EXPECT_EQ(copies, 0) << "the field goes before shortcuts";
    EXPECT_EQ(saves, 2) << "that it does not know";
    EXPECT_EQ(pane->GetProjectionMode(), Model::Pane::ProjectionMode::Perspective);
    QApplication::clipboard()->setText("a\nb");
    QTest::keyClick(scene, Qt::Key_Insert, Qt::ShiftModifier);
    QTest::keyClick(scene, Qt::Key_Backspace);

    QInputMethodEvent composing("ni", {});
    QApplication::sendEvent(scene, &composing);
    QInputMethodEvent done("", {});
    done.setCommitString(QString(QChar(0x4F60)));
    QApplication::sendEvent(scene, &done);
    QTest::keyClick(scene, Qt::Key_Return);
    EXPECT_EQ(box->Text(), L"a \u4F60") << "and no letter of a shortcut";

    QTest::keyClicks(scene, "x");
    QTest::mouseClick(scene, Qt::LeftButton, {}, {200, 50});
    EXPECT_FALSE(scene->testAttribute(Qt::WA_InputMethodEnabled));
    EXPECT_EQ(box->Text(), L"a \u4F60x");
    QTest::keyClick(scene, Qt::Key_O);
    EXPECT_EQ(copies, 1) << "the shortcut again";
}

TEST_F(TextFieldTest, theTabKeyGoesThroughTheSceneAndOnToTheOtherWidgets) {
    scene->setFocus();
    QTest::keyClick(scene, Qt::Key_Tab);
    EXPECT_TRUE(scene->hasFocus() && scene->View().Input().HasFocus());
    QTest::keyClicks(scene, "a");
    other->setFocus();
    QTest::qWait(50);
    EXPECT_FALSE(scene->testAttribute(Qt::WA_InputMethodEnabled));
    scene->setFocus();
    QTest::keyClicks(scene, "b");
    QTest::keyClick(scene, Qt::Key_Tab);
    EXPECT_TRUE(other->hasFocus()) << "nobody else in the scene wants it";
    EXPECT_EQ(box->Text(), L"ab");
    scene->setFocus();
    QTest::keyClick(scene, Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(scene->View().Input().HasFocus());
    pane->Remove(box);
    QTest::qWait(100);
    EXPECT_FALSE(scene->View().Input().HasFocus());
    QTest::keyClick(scene, Qt::Key_Tab);
    EXPECT_TRUE(other->hasFocus());

    SceneWindow alone;
    alone.View().SetModel(model);
    pane->Add(box);
    alone.resize(300, 200);
    alone.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&alone));
    alone.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&alone));
    QTest::qWait(100);
    QTest::mouseClick(&alone, Qt::LeftButton, {}, {30, 160});
    QTest::qWait(100);
    QInputMethodQueryEvent query(Qt::ImEnabled | Qt::ImCursorRectangle);
    QApplication::sendEvent(&alone, &query);
    EXPECT_TRUE(query.value(Qt::ImEnabled).toBool());
    EXPECT_TRUE(QRectF(20, 150, 100, 20).contains(query.value(Qt::ImCursorRectangle).toRectF()));
    QTest::keyClick(&alone, 'c');
    QTest::keyClick(&alone, Qt::Key_Return);
    EXPECT_EQ(box->Text(), L"acb") << "where it was clicked";
}

} // namespace
} // namespace Qor::Chart::Host
