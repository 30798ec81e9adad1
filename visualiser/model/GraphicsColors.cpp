#include "GraphicsColors.h"

#include <cstdlib>
#include <map>

namespace {

struct ElementRow {
    const char* symbol;
    RGBA element;
    RGBA active;
};

// Carbon stays grey and hydrogen white as chemists expect; oxygen red, nitrogen blue, halogens
// green to purple by weight. The active table lightens every colour so that an active crystal
// stands out beside the others; "Unknown" is nearly transparent in both.
const ElementRow rows[] = {
    {"Unknown", {1, 1, 1, 0.1f}, {1, 1, 1, 0.1f}},
    {"Undefined", {1, 0, 1, 1}, {0.85f, 0.15f, 0.85f, 1}},
    {"H", {1, 1, 1, 1}, {1, 1, 1, 1}},
    {"D", {1, 1, 0.9f, 1}, {1, 1, 0.9f, 1}},
    {"He", {0.85f, 1, 1, 1}, {0.85f, 1, 1, 1}},
    {"Li", {0.8f, 0.5f, 1, 1}, {0.8f, 0.5f, 1, 1}},
    {"Be", {0.7f, 1, 1, 1}, {0.7f, 1, 1, 1}},
    {"B", {1, 0.71f, 0.71f, 1}, {1, 0.86f, 0.86f, 1}},
    {"C", {0.57f, 0.57f, 0.57f, 1}, {0.85f, 0.85f, 0.85f, 1}},
    {"N", {0.56f, 0.56f, 1, 1}, {0.7f, 0.7f, 1, 1}},
    {"O", {0.94f, 0, 0, 1}, {1, 0.3f, 0.3f, 1}},
    {"F", {0.76f, 1, 0, 1}, {0.89f, 1, 0.15f, 1}},
    {"Na", {0.67f, 0.36f, 0.95f, 1}, {0.82f, 0.51f, 0.95f, 1}},
    {"Mg", {0.53f, 1, 0, 1}, {0.68f, 1, 0.15f, 1}},
    {"Al", {0.81f, 0.65f, 0.65f, 1}, {0.96f, 0.8f, 0.8f, 1}},
    {"Si", {0.5f, 0.6f, 0.6f, 1}, {0.65f, 0.75f, 0.75f, 1}},
    {"P", {1, 0.5f, 0, 1}, {1, 0.56f, 0.15f, 1}},
    {"S", {1, 0.78f, 0.19f, 1}, {1, 0.93f, 0.04f, 1}},
    {"Cl", {0.12f, 0.94f, 0.12f, 1}, {0.27f, 1, 0.27f, 1}},
    {"Ar", {0.5f, 0.82f, 0.9f, 1}, {0.65f, 0.97f, 1, 1}},
    {"K", {0.55f, 0.25f, 0.83f, 1}, {0.7f, 0.4f, 0.98f, 1}},
    {"Ca", {0.23f, 1, 0, 1}, {0.38f, 1, 0.15f, 1}},
    {"Fe", {0.9f, 0.3f, 0, 1}, {0.95f, 0.45f, 0.15f, 1}},
    {"Co", {0.3f, 0.2f, 0.8f, 1}, {0.45f, 0.35f, 0.95f, 1}},
    {"Ni", {0, 0.8f, 0.4f, 1}, {0.15f, 0.95f, 0.65f, 1}},
    {"Cu", {0.8f, 0.3f, 0.1f, 1}, {0.95f, 0.45f, 0.25f, 1}},
    {"Br", {0.6f, 0, 0.1f, 1}, {0.75f, 0.15f, 0.25f, 1}},
    {"Pd", {1, 0.1f, 0.5f, 1}, {1, 0.1f, 0.5f, 1}},
    {"I", {0.6f, 0, 0.6f, 1}, {0.75f, 0.15f, 0.75f, 1}},
};

const ElementRow& row(const std::string& symbol)
{
    static const std::map<std::string, const ElementRow*> table = [] {
        std::map<std::string, const ElementRow*> t;
        for (const ElementRow& r : rows)
            t.emplace(r.symbol, &r);
        return t;
    }();
    const auto it = table.find(symbol);
    return it != table.end() ? *it->second : *table.at("Undefined");
}

const RGBA palette_entries[18] = {
    {0, 1, 0, 1},    {0, 0, 1, 1},    {1, 0, 0, 1},          {1, 1, 0, 1},          {1, 0, 1, 1},
    {0, 1, 1, 1},    {1, 1, 1, 1},    {0, 0.6f, 0, 1},       {0, 0, 0.6f, 1},       {0.6f, 0, 0, 1},
    {1, 1, 0.6f, 1}, {1, 0.6f, 1, 1}, {0.6f, 1, 1, 1},       {0.6f, 0.6f, 0.6f, 1}, {1, 1, 0.3f, 1},
    {1, 0.3f, 1, 1}, {0.3f, 1, 1, 1}, {0.3f, 0.3f, 0.3f, 1},
};

} // namespace

RGBA GraphicsColors::element(const std::string& symbol)
{
    return row(symbol).element;
}

RGBA GraphicsColors::active_element(const std::string& symbol)
{
    return row(symbol).active;
}

RGBA GraphicsColors::palette(int n)
{
    return palette_entries[std::abs(n % 18)];
}
