/**
 * Shows a launcher what kind of Java VM runs this class.
 *
 * <p>The launcher starts a candidate VM with this class and the names of system properties. The
 * answer, on standard output, is a line that no VM prints by accident and then, for each name, a
 * line with the property's value. The launcher ignores what comes before the first line, such as a
 * warning of the VM.
 *
 * <p>The class is compiled for Java 8 and uses nothing newer, so that every VM can run it.
 */
public final class Verify {
    /** The line behind which the values stand. The launcher looks for exactly this number. */
    private static final String MAGIC_LINE = "1739021872";

    private Verify() {}

    /** Prints the values of the system properties named by the arguments, one a line. */
    public static void main(String[] names) {
        StringBuilder answer = new StringBuilder(MAGIC_LINE).append('\n');
        for (String name : names) {
            answer.append(valueOf(name)).append('\n');
        }
        System.out.print(answer);
        System.out.flush();
    }

    /** The value on one line; empty for a property that is not there or may not be read. */
    private static String valueOf(String name) {
        try {
            return System.getProperty(name, "").replace('\n', ' ').replace('\r', ' ');
        } catch (SecurityException | IllegalArgumentException e) {
            return "";
        }
    }
}
