// SPDX-License-Identifier: LGPL-3.0-or-later
// A little program to be looked at and clicked: one window with whatever can be in the way of a click. The
// label "said" shows what happened last.
#include <QApplication>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

namespace {

class Subject : public QMainWindow {
 public:
  Subject() {
    setObjectName("Subject");
    setWindowTitle("The subject");
    setCentralWidget(new QWidget);
    layout_ = new QFormLayout(centralWidget());
    said_ = named(new QLabel, "said");

    addFields();
    button("plain", [this] { say("plain"); });
    button("disabled", [this] { say("disabled"); })->setEnabled(false);
    QPushButton* hidden = button("hidden", [this] { say("hidden"); });
    QPushButton* covered = button("covered", [this] { say("covered"); });
    button("opensDialog", [this] { ask("Really?", "Because."); });
    button("opensSheet", [this] { openSheet(); });

    auto* tabs = named(new QTabWidget, "tabs");
    tabs->addTab(new QLabel("one"), "&One");
    tabs->addTab(new QLabel("two"), "Two");
    QMenu* menu = menuBar()->addMenu("&Things");
    menu->setObjectName("thingsMenu");
    menu->addAction("&Do", QKeySequence("Ctrl+D"), this, [this] { say("done"); })->setObjectName("doThing");
    menu->addAction("Ask...", this, [this] { ask("From the menu?", {}); });
    menu->addAction("Never")->setEnabled(false);

    resize(400, 500);
    hidden->hide();
    show();
    centralWidget()->layout()->activate();
    auto* cover = new QLabel("cover", centralWidget());
    cover->setObjectName("cover");
    cover->setGeometry(covered->geometry());
    cover->show();
    other_.setObjectName("Other");
    other_.show();
  }

 private:
  template <typename Widget>
  Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(name);
    layout_->addRow(widget);
    return widget;
  }

  QPushButton* button(const char* name, std::function<void()> pressed) {
    auto* result = named(new QPushButton(name), name);
    connect(result, &QPushButton::clicked, this, std::move(pressed));
    return result;
  }

  void addFields() {
    auto* field = named(new QLineEdit("old"), "field");
    connect(field, &QLineEdit::editingFinished, this, [this, field] {
      if (field->text() == "ask") ask("On leaving?", {});
    });
    named(new QLineEdit, "secondField");
    auto* list = named(new QComboBox, "list");
    list->addItems({"", "Female", "Male"});
    named(new QPlainTextEdit("one\ntwo"), "area");
  }

  void say(const QString& what) { said_->setText(what); }

  void ask(const QString& text, const QString& information) {
    QMessageBox box(this);
    box.setText(text);
    box.setInformativeText(information);
    QAbstractButton* yes = box.addButton("&Yes", QMessageBox::AcceptRole);
    box.addButton("Cancel", QMessageBox::RejectRole);
    box.exec();
    say(text + (box.clickedButton() == yes ? " yes" : " cancelled"));
  }

  void openSheet() {
    auto* box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setText("A sheet?");
    box->addButton("Close it", QMessageBox::AcceptRole);
    box->open();
  }

  QFormLayout* layout_ = nullptr;
  QLabel* said_ = nullptr;
  QWidget other_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const Subject subject;
  return QApplication::exec();
}
