// Holds a mutex for the length of a block: MutexLock lock(mutex). Works with the engine's Mutex and with anything else that has lock() and unlock().

#ifndef GODOT_CPP_CORE_MUTEX_LOCK_HPP
#define GODOT_CPP_CORE_MUTEX_LOCK_HPP

namespace godot {

template <class M>
class MutexLock {
	M &mutex;

public:
	explicit MutexLock(M &p_mutex) : mutex(p_mutex) { mutex.lock(); }
	explicit MutexLock(const M &p_mutex) : MutexLock(const_cast<M &>(p_mutex)) {}
	MutexLock(const MutexLock &) = delete;
	MutexLock &operator=(const MutexLock &) = delete;
	~MutexLock() { mutex.unlock(); }
};

} // namespace godot

#define _THREAD_SAFE_CLASS_ mutable ::godot::Mutex _thread_safe_;
#define _THREAD_SAFE_METHOD_ ::godot::MutexLock _thread_safe_method_(_thread_safe_);
#define _THREAD_SAFE_LOCK_ _thread_safe_.lock();
#define _THREAD_SAFE_UNLOCK_ _thread_safe_.unlock();

#endif // GODOT_CPP_CORE_MUTEX_LOCK_HPP
