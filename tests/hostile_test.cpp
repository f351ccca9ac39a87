// Hostile content, on small stacks and with a decimal comma.

#include <gtest/gtest.h>
#include <pthread.h>

#include <QCoreApplication>
#include <clocale>
#include <thread>

#include "platform/ut.h"
#include "support.h"
#include "tov/design/design.h"

namespace {

using namespace kiri::tov;

// The names of a dump's nets, or "false" if it does not load.
std::string netsOf(std::string const& text) {
    support::TempDir const dir;
    TovDesign design;
    std::list<TovNetNode*> nets;
    std::string names = design.load(support::write(dir / "dump", text).c_str()) ? "" : "false";
    design.getNets(nets);
    for (auto* node : nets) names += node->name() + ";";
    return names;
}

std::string repeated(std::string const& text) {
    std::string all;
    for (int i = 0; i < 500000; ++i) all += text;
    return all;
}

// Several threads may do it at once.
void checkContent() {
    std::string const from = "set_false_path -from  ";
    std::string const many = repeated("x");
    std::pair<std::string, std::string> const files[] = {
        {"create_clock -period 2.5", "create_clock -period 2.500000\n~\n"},
        {"set_max_delay 0x1.8p1", "set_max_delay 3.000000\n~\n"},
        {"set_max_delay -1e999", "set_max_delay 0.000000\n~\n"},
        {from + repeated("["), "set_false_path\n~\n"},
        {from + "\"" + many + " x\"" + repeated("\""), from + many + "\n~\n"},
        {many + repeated("\n") + "\xff\x80", many + "\n\xff\x80\n~\n"},
    };
    for (auto const& [text, body] : files) {
        TOV document;
        support::load(document, text);
        support::load(document, document.toSaveString());
        EXPECT_TRUE(support::bodyOf(document) == body) << text.substr(0, 30);
    }
    std::string const net = "<top><library><unit><nets><nitem name=\"";
    std::string const nested = repeated("<z>") + repeated("</z>");
    std::pair<std::string, std::string> const dumps[] = {
        {net + many + "\"/>", many + ";"},
        {net + "a\">" + nested + "</nitem>" + nested + "<nitem/>", "a;;"},
        {"<!DOCTYPE top [<!ENTITY a \"" + many + "\">]>" + net + "&a;&a;\"/>", ""},
    };
    for (auto const& [text, names] : dumps) EXPECT_TRUE(netsOf(text) == names);
}

TEST(Hostile, ContentOnThreadsWithSmallStacks) {
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    pthread_attr_setstacksize(&attributes, 64 * 1024);
    pthread_setattr_default_np(&attributes);
    std::thread other(checkContent);
    std::thread(checkContent).join();
    other.join();
}

TEST(Hostile, DecimalComma) {
    support::TempDir const dir;
    ::setenv("LOCPATH", (dir / "").c_str(), 1);
    ::setenv("LC_ALL", "comma", 1);
    std::string const make = "localedef -i de_DE -f UTF-8 " + (dir / "comma") + " 2>&1";
    if (std::system(make.c_str()) != 0 || std::setlocale(LC_ALL, "") == nullptr) GTEST_SKIP();
    int count = 0;
    QCoreApplication const application(count, nullptr);  // sets the locale of the environment
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    checkContent();
    EXPECT_STREQ(neoform("%f %5.2f", 1.5, 1.25), "1.500000  1.25");
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    std::setlocale(LC_ALL, "C");
}

}  // namespace
