#pragma once

#include "product.h"
#include "testunit.h"

#include <QPair>
#include <QVector>
#include <memory>

class QAbstractButton;
class QButtonGroup;

/// An output and the input that it is to show, 0-based.
using Route = QPair<int, int>;
using Routes = QVector<Route>;

/// A unit at work. Its touchscreen is that of this process, since only there a touch finds its button without
/// a second opinion on where that is; what else it has is then in this process as well, as in the program's
/// own `main`.
class Site
{
public:
    enum Operation { Process, Panel, Touchscreen };
    explicit Site(Operation operation);
    ~Site();

    TestUnit &unit() { return m_unit; }
    qint64 processId() const { return m_product->processId(); }

    /// For this thread's event loop alone.
    void touch(const Routes &routes);
    /// Presses and releases them all at once, faster than the panel reads.
    void pressKeys(const Routes &routes);
    /// Another process stores them in the record.
    void storeFromOutside(const Routes &routes);

private:
    struct Window;

    TestUnit m_unit;
    std::unique_ptr<Product> m_product;
    std::unique_ptr<QMxComm> m_observer; ///< attached to the product's record
    std::unique_ptr<Window> m_window;
};
