package town.library;

import java.util.*;
import static java.lang.Math.max;

/**
 * Lends books. A 'quote' and a "text" in here are comment.
 */
@SuppressWarnings("unchecked")
public final class Library<T extends Comparable<T>> implements Iterable<Book> {
    private static final long LIMIT = 1_000_000L;
    private static final int MASK = 0xFF_FF, BITS = 0b1010, OCTAL = 0777;
    private static final double RATE = 1.5e-3, HALF = .5d;
    private final char[] marks = {'a', '\'', '\\', '\n', '\u00e4', '\0', '"'};
    private volatile boolean open = true; // until the evening

    private final String rules = """
        Silence, please.
        A "quoted" word and \""" three marks \t stay text.
        """;

    @Override
    public Iterator<Book> iterator() {
        return books.iterator();
    }

    @Deprecated(since = "2", forRemoval = true) public void shut(@NotNull String why) {
        open = false;
    }

    public @interface Checked { int value() default 1; }

    sealed interface Shape permits Circle, Square {}
    record Circle(double radius) implements Shape {}
    enum State { IN, OUT, LOST }

    /* a block */ int area(Shape shape) /* another */ {
        return switch (shape) {
            case Circle c when c.radius() > 10 -> (int) (Math.PI * c.radius() * c.radius());
            case Square s -> max(1, s.side() << 2);
            default -> throw new IllegalStateException("unknown: " + shape);
        };
    }

    synchronized String lend(String title) throws java.io.IOException {
        var found = books.stream().filter(book -> book.title().equals(title)).findFirst();
        if (!found.isPresent() || title == null) return null;
        try (var log = new java.io.FileWriter("c:\\temp\\log.txt")) {
            log.write("lent \"" + title + "\"\r\n"); // not \a comment
        } catch (RuntimeException | Error problem) {
            assert problem != null : "can't be";
        } finally {
            count += 1;
        }
        for (int i = 0; i < 10 && i != 7; i++) do { i--; } while (i > 100);
        String broken = "no end
        int next = 2;
        char alsoBroken = 'x
        return title instanceof String text ? text : null;
    }
}
/* and no end
class Hidden {}
