// drag-source FILE: a small window in the screen's corner from which the file can be dragged.
// It prints a line for each drag: "taken" or "not taken".
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <cstdio>
#include <memory>

namespace {

class Source : public QWidget {
  public:
    explicit Source(const QString& file) : file_(file) {
        setWindowTitle("Source");
        setWindowFlags(Qt::X11BypassWindowManagerHint);
        setGeometry(0, 0, 60, 60);
    }

  protected:
    void mousePressEvent(QMouseEvent* /*event*/) override {
        auto files = std::make_unique<QMimeData>();
        files->setUrls({QUrl::fromLocalFile(file_), QUrl::fromLocalFile("/second")});
        auto drag = std::make_unique<QDrag>(this);
        drag->setMimeData(files.release());
        const bool taken =
            drag.release()->exec(Qt::CopyAction) == Qt::CopyAction;  // deletes itself
        std::puts(taken ? "taken" : "not taken");
        std::fflush(stdout);
    }

  private:
    QString file_;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Source source(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    source.show();
    return QApplication::exec();
}
