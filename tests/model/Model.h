// SPDX-License-Identifier: LGPL-3.0-or-later
#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "platform/controls/Alert.h"
#include "tests/model/Record.h"
#include "tests/model/Step.h"

namespace model {

/// The text fields of a document's window.
enum Field : int { IdentifierField, BirthField, DateField, MeasureField, FieldCount, NoField = FieldCount };

/// Where the content of a document is since it was to be saved.
enum class Content { Kept, GivenUp, OnlyHere };

/// A document as the model has it.
struct Doc {
  QString file;  ///< below the home folder; empty while there is none
  int untitledNumber = 1;
  Record record;
  int current = 0;
  QString text[FieldCount];
  int focus = NoField;
  std::set<int> editing;
  bool edited = false;
  bool blank = true;
  bool lookUpRequired = false;
  bool closeRequested = false;
  bool closeAfterSave = false;
  bool askingToClose = false;
  bool closedByUser = false;
  bool closed = false;
  bool destroyed = false;
  /// More than an identifier was entered since it was read or saved.
  bool holdsMore = false;
  QString savedName;
  Record known;                     ///< what it last read from its file or wrote there
  std::optional<Record> attempted;  ///< what it last wrote or tried to write, wherever that was
  std::optional<Content> lastSave;  ///< what came of the last save that was tried
  bool lastSaveSucceeded = false;
  QString name, studyID;
  std::optional<int> tokenAskedAbout;  ///< the examination that the open sheet asks about

  QString preferredName() const;
  /// The record with what stands in the fields.
  Record shown() const;
};
using DocPtr = std::shared_ptr<Doc>;

/// A question that must come up, and what is answered.
struct Question {
  enum class Form { Alert, Sheet, OpenPanel, SavePanel };
  Form form = Form::Alert;
  velmora::platform::Alert alert;
  bool informationKnown = true;
  QString proposedName;  ///< of a save panel; null where it does not matter
  int result = 0;
  QString chosen;  ///< the file, of panels
  QList<Event> meanwhile;
};

/// A link reply that must be sent.
struct Reply {
  QString identifier, name, studyID, examDate;
  bool operator==(const Reply&) const = default;
};

/// The program as it should behave, written down anew and as small as can be: patients, documents, files,
/// questions. Windows, widgets and bytes do not occur.
///
/// What may be lost is in it by name: wherever content is dropped because that is how the program is meant to
/// work, or because a person chose it, drop() says so. Everything else must be found again somewhere.
class Model {
 public:
  Model();

  /// Lets the step happen. What it must have shown, logged and sent stands below until the next one.
  void play(const Step& step);

  QList<Question> questions;
  QStringList failuresLogged;
  /// The file that the step's number stands for, below the home folder.
  QString fileMeant;
  /// Whether the application has ended in this step and been started again.
  bool restarted = false;

  const QList<DocPtr>& frontToBack() const { return front_; }
  const std::map<QString, Record>& files() const { return files_; }
  /// Earlier versions and rescue copies.
  QList<Record> kept() const;
  /// The kept copy that was opened in this step.
  std::optional<Record> keptMeant;
  const QStringList& cache() const { return cache_; }
  const QList<Reply>& replies() const { return replies_; }
  const QSet<QString>& charts() const { return charts_; }
  int beeps() const { return beeps_; }
  /// Versions of examinations that were dropped rightly.
  const QSet<QString>& drops() const { return drops_; }
  /// Whether an examination may stand under an identifier: it was entered there, or the identifier of the
  /// document that held it was filled or typed anew.
  bool mayStandUnder(int token, const QString& identifier) const {
    return ledger_.contains({token, identifier});
  }

 private:
  struct Call {
    double due;
    long sequence;
    DocPtr owner;  // none: the controller
    std::function<void()> what;
  };

  // Time.
  void later(double seconds, const DocPtr& owner, std::function<void()> what);
  void pass(double seconds);
  void turn();
  void eventsComeThrough();

  // Questions.
  int ask(const QString& message, const QString& first, const QString& second, const QString& third,
          const QString& information, bool informationKnown = true);
  int ask(Question question, int buttons);
  QString askSavePanel(const QString& proposedName, const QStringList& choices);
  void happens(const Event& event);

  // Documents.
  DocPtr adopt(const DocPtr& doc);
  DocPtr newDocument();
  DocPtr open(const QString& file);
  DocPtr documentOf(const QString& file) const;
  DocPtr frontDocument() const { return front_.isEmpty() ? nullptr : front_.first(); }
  DocPtr userDocument() const;
  void bringToFront(DocPtr doc);
  void close(const DocPtr& doc);
  bool autoSaves(const Doc& doc) const { return autoSave_ && !doc.preferredName().isEmpty(); }
  QString displayName(const Doc& doc) const;
  static QString fileOf(const QString& name) { return QStringLiteral("Records/%1.rec").arg(name); }
  QString fileNumbered(int number) const;

  // Examinations and fields.
  void store(Doc& doc);
  void load(Doc& doc);
  void putOrder(Doc& doc);
  void setIdentifier(Doc& doc, const QString& identifier);
  void setText(Doc& doc, int field, const QString& text);
  bool begin(const DocPtr& doc, int field);
  void end(const DocPtr& doc, int field);
  void leaveField(const DocPtr& doc, int next);
  void endEditing(const DocPtr& doc);
  void abandonEditing(Doc& doc);
  void type(const DocPtr& doc, int field, const QString& text, bool pressReturn);
  void typeOn(const DocPtr& doc, const QString& text, bool pressReturn);
  void newExam(const DocPtr& doc);
  void deleteExam(const DocPtr& doc);
  void answerSheet(const DocPtr& doc, bool remove);
  void goTo(const DocPtr& doc, int exam);
  void updateDisplay(Doc& doc) { store(doc); }

  // Look-up and link.
  bool lookUp(const DocPtr& doc, const QString& identifier, bool confirm);
  void openLookedUp(const DocPtr& doc, const QString& file);
  void closeInFavour(const DocPtr& doc, const QString& file);
  void tellWhoseRecord(const QString& file, const QString& identifier);
  /// Whether there is a copy now; without one the document may have stayed open.
  bool closeKeepingCopy(const DocPtr& doc);
  void tellAboutCopy(const QString& name);
  void link(const Event& request);
  void linkedNewExam(const Event& request);
  static QString studyDate(const Event& request);

  // Saving and closing.
  void save(const DocPtr& doc);
  void saveAs(const DocPtr& doc);
  void saveTo(const DocPtr& doc, const QString& file, bool replacementConfirmed, bool throughPanel);
  /// Puts the content into the file, unless something is in the way.
  bool written(const DocPtr& doc, const QString& file, bool replacementConfirmed);
  void couldNotSave(const DocPtr& doc, const QString& file);
  bool keepEarlier(const QString& file, bool own);
  /// For content that is about to be dropped.
  Content rescue(const DocPtr& doc);
  Content askWhereToSave(const DocPtr& doc, const QString& message);
  /// Another window has saved the file of this document.
  void fileWasReplaced(const DocPtr& doc);
  bool mayCloseAfterSave(const Doc& doc);
  void somebodySavesMeanwhile(const QString& file);
  bool canClose(const DocPtr& doc);
  void performClose(const DocPtr& doc);
  bool closeAllNow();
  void terminate();
  void quit();
  void sessionEnd();
  void restart();

  // The rest.
  void command(const DocPtr& doc, std::function<void()> what);
  void openWithPanel(int number);
  void openKept(int number);
  void makeRoomFor(const QList<DocPtr>& before);
  void batchOpen(const QString& file);
  void exportChart(const DocPtr& doc, bool interactive);
  void sendReply();
  void scan();
  void addToCache(const QString& file);
  void userStep(const Step& step);

  void drop(const Record& record);
  void enteredUnder(const Doc& doc);

  QList<DocPtr> docs_;   // in the order of their making
  QList<DocPtr> front_;  // front to back
  std::list<DocPtr> closedDocs_;
  DocPtr active_;  // whose window has the keyboard
  std::list<Call> calls_;
  double now_ = 0;
  long sequence_ = 0;
  bool asking_ = false;
  bool terminating_ = false;
  bool stopped_ = false;

  std::map<QString, Record> files_;
  struct Version {
    Record record;
    bool own = true;
  };
  std::map<QString, QList<Version>> earlier_;
  QList<Record> rescued_;
  QStringList cache_;
  QList<Reply> waitingReplies_;
  QList<Reply> replies_;
  QSet<QString> charts_;
  int beeps_ = 0;
  int lastToken_ = 0;
  bool autoSave_ = true;
  bool toOsirix_ = false;
  bool failingWrites_ = false;
  bool failingCopies_ = false;
  int closing_ = 0;         // documents that a batch export has still to close
  bool batchKept_ = false;  // it has left rescue copies
  bool racing_ = false;
  bool keepsBlank_ = false;
  QSet<QString> drops_;
  std::set<std::pair<int, QString>> ledger_;
  QList<Answer> answers_;
};

/// The files that stand in the save folder at the beginning: their place below the home folder, and what is
/// in them.
std::map<QString, Record> firstFiles();

/// What somebody else makes of a record: one more examination. Its token is given by the caller.
Record changedByAnother(Record record, int token);
/// The record that somebody else makes where there was none, with one examination.
Record madeByAnother(int token);

}  // namespace model
