#ifndef SARN_CORE_OWNEDITEMS_H
#define SARN_CORE_OWNEDITEMS_H

// Loop entries and items kept in wire order and addressed by position. Their
// owners hold them as owned raw pointers in a std::vector; the public API
// passes positions as unsigned char, which are checked here.
#include <vector>

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace owned {

/** The item at that position, or null at or beyond the end. */
template <typename T>
T* at(const std::vector<T*>& list, unsigned char index) {
    return index < list.size() ? list[index] : nullptr;
}

/** Deletes and erases the item at that position; false when there is none. */
template <typename T>
bool removeAt(std::vector<T*>& list, unsigned char index) {
    if (index >= list.size() || list[index] == nullptr)
        return false;
    delete list[index];
    list.erase(list.begin() + index);
    return true;
}

/** Appends an item (a null pointer is not stored). */
template <typename T>
void append(std::vector<T*>& list, T* item) {
    if (item != nullptr)
        list.push_back(item);
}

template <typename T>
void deleteAll(std::vector<T*>& list) {
    for (T* item : list)
        delete item;
    list.clear();
}

}  // namespace owned
}  // namespace Sarn
#pragma GCC visibility pop

#endif
