#pragma once

// Where a lower layer finds what a higher one gives it: an object of `Interface`, whose base does
// nothing and stands in until one is connected. Application thread.
template <class Interface>
class Connection {
 public:
  void connect(Interface& given) { connected_ = &given; }  // not owned
  void disconnect() { connected_ = nullptr; }
  bool isConnected() const { return connected_ != nullptr; }
  Interface* operator->() { return connected_ ? connected_ : &none_; }

 private:
  Interface none_;
  Interface* connected_ = nullptr;
};
