import Foundation

/* A report /* nested */ still the comment */
public protocol Report: AnyObject, Sendable {
    associatedtype Value: Comparable
    var title: String { get set }
    func value(at place: Int) throws -> Value?
}

@frozen
public enum Sky: String, CaseIterable { case clear = "☀", cloudy, rain }

@MainActor final class Day<T: Equatable>: Report where T: Hashable {
    @Published private(set) var title = "day \"one\"\t\u{1F600}"
    static let limit = 1_000_000, mask = 0xFF_FF, bits = 0b1010, octal = 0o17
    let rate: Double = 1.5e-3 // small
    weak var owner: Day?
    lazy var text: String = """
        The "day" is \(title) and \(values.map { "\($0 + (1 * 2))" }.joined(separator: ", "))
        with a \""" in it
        """
    let raw = #"a \n that stays, "quoted" too"#
    let long = #"""
        raw over
        lines " and more
        """#

    init?(title: String, values: [T] = []) {
        guard !title.isEmpty else { return nil }
        self.title = title
        super.init()
    }

    deinit { print("gone \(title)") }

    subscript(index: Int) -> T {
        get { values[index] }
        set(newValue) { values[index] = newValue }
    }

    func value(at place: Int) throws -> T? {
        if place < 0 || place >= values.count { throw Problem.range(place) }
        for (number, item) in values.enumerated() where number == place { return item }
        switch sky {
        case .clear, .cloudy: break
        case let other where other != .rain: fallthrough
        default: return nil
        }
        let closure: (@escaping () async -> Void) -> Bool = { _ in true }
        return try? await values.first as? T
    }
}

#if os(Linux) && !DEBUG
extension Array where Element: Numeric {
    mutating func double() { self = map { $0 * 2 } }
}
#elseif swift(>=5.9)
#warning("old")
#endif

@available(macOS 12, *) struct View { var body: some View { Text("hi") } }
func add(_ left: inout Int, to right: Int = 5) -> Int { left &+ right }
let selector = #selector(Day.tap), here = #line
let open = "not closed
let after = false
let never = """
    not closed
let hidden = 1
