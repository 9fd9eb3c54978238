#include "ui_world.h"

#include "ui/long_text_item.h"

#include <QElapsedTimer>
namespace velarc { namespace {
class LongTextTest : public UiWorld {};
TEST_F(LongTextTest, probe)
{
    QString line = u"The harbour ferry was late again, and the crew blamed the tide for it.\n"_s;
    QElapsedTimer t; t.start();
    QString text = line.repeated(5'000'000/line.size());
    LongTextLayout l; l.setFont(QFont(), 1.2); l.setWidth(560);
    t.restart(); l.setLineLimit(6); l.setText(text); std::printf("\n" "limited set %lld ms h %f", t.elapsed(), l.height());
    t.restart(); l.setLineLimit(0);  std::printf("\n" "unlimited %lld ms h %f", t.elapsed(), l.height());
    t.restart(); l.layOut(0, 2000);  std::printf("\n" "lay out %lld ms", t.elapsed());
    t.restart(); l.setText(u'x' + text);  std::printf("\n" "set2 %lld ms", t.elapsed());
    t.restart(); l.layOut(500000, 502000);  std::printf("\n" "lay out mid %lld ms", t.elapsed());
    QString one(5'000'000, u'x');
    t.restart(); l.setText(one);  std::printf("\n" "set one %lld ms", t.elapsed());
    t.restart(); l.layOut(500000, 502000);  std::printf("\n" "lay out mid %lld ms", t.elapsed());
    t.restart(); l.setText(QString(5'000'000, u'\n'));  std::printf("\n" "set lf %lld ms", t.elapsed());
    t.restart(); l.layOut(500000, 502000);  std::printf("\n" "lay out mid %lld ms", t.elapsed());
}
}}
#include <QTextLayout>
#include <QQmlComponent>
namespace velarc { namespace {
TEST_F(LongTextTest, area)
{
    openWindow();
    for (int n : {50'000, 200'000, 1'000'000}) {
    QString line = u"The harbour ferry was late again, and the crew blamed the tide for it.\n"_s;
    QString text = line.repeated(n/line.size()); if (n==200000) text.replace(u"\n"_s,u" "_s);if (n==50000) text=QString(n,u'x');
    QElapsedTimer t; t.start();
    viewModel->setQuickInput(text);
    auto a = t.elapsed();
    t.restart();
    settle();
    std::printf("\narea %d: set %lld settle %lld\n", n, a, t.elapsed());
    auto *item = itemCalled(u"Type, paste, or drop a file — then hit Run"_s);
    if (item) { item->forceActiveFocus();
    t.restart(); type(u"x"_s); std::printf("type %lld\n", t.elapsed()); 
    t.restart(); type(u"x"_s); std::printf("type %lld\n", t.elapsed()); }
    }
}
}}
