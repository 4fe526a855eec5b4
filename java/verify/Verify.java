import java.io.File;
import java.util.Arrays;
import java.util.HashSet;
import java.util.Set;

/**
 * Shows a launcher what kind of Java VM runs this class.
 *
 * <p>The launcher starts a candidate VM with this class and the names of system properties. The
 * answer, on standard output, is a line that no VM prints by accident and then, for each name, a
 * line with the property's value. The launcher ignores what comes before the first line, such as a
 * warning of the VM.
 *
 * <p>Some names are answered though no VM has a property of that name, so that one question can
 * cover a range of versions. A property that the VM does have wins.
 *
 * <ul>
 *   <li>{@code vessant.java.min.N}: "true" for Java N or newer, else "false"; Java 1.8 is 8
 *   <li>{@code vessant.java.max.N}: "true" for Java N or older, else "false"
 *   <li>{@code vessant.jdk}: "true" where a Java compiler comes with the VM, else "false"
 *   <li>{@code vessant.module.NAME}: "true" where the runtime holds that module, else "false"
 *   <li>{@code vessant.bits}: "64" or "32"
 * </ul>
 *
 * <p>The class is compiled for Java 8 and uses nothing newer, so that every VM can run it.
 */
public final class Verify {
    /** The line behind which the values stand. The launcher looks for exactly this number. */
    private static final String MAGIC_LINE = "1739021872";

    private static final String COMPUTED = "vessant.";
    private static final String MINIMUM = "vessant.java.min.";
    private static final String MAXIMUM = "vessant.java.max.";
    private static final String MODULE = "vessant.module.";

    private static final int FIRST_WITH_MODULES = 9;
    private static final int NO_NUMBER = -1;

    private Verify() {}

    /** Prints the values of the system properties named by the arguments, one a line. */
    public static void main(String[] names) {
        StringBuilder answer = new StringBuilder(MAGIC_LINE).append('\n');
        for (String name : names) {
            answer.append(valueOf(name).replace('\n', ' ').replace('\r', ' ')).append('\n');
        }
        System.out.print(answer);
        System.out.flush();
    }

    /** Empty for a property that is not there or may not be read. */
    private static String valueOf(String name) {
        try {
            String value = System.getProperty(name);
            if (value != null) {
                return value;
            }
            return name.startsWith(COMPUTED) ? computed(name) : "";
        } catch (SecurityException | IllegalArgumentException e) {
            return "";
        }
    }

    /** Empty for a name that none of the rules knows. */
    private static String computed(String name) {
        if (name.startsWith(MINIMUM)) {
            int wanted = featureOf(name.substring(MINIMUM.length()));
            return wanted == NO_NUMBER ? "" : String.valueOf(wanted <= feature());
        }
        if (name.startsWith(MAXIMUM)) {
            int wanted = featureOf(name.substring(MAXIMUM.length()));
            int own = feature();
            return wanted == NO_NUMBER ? "" : String.valueOf(own != NO_NUMBER && own <= wanted);
        }
        if (name.startsWith(MODULE)) {
            return String.valueOf(hasModule(name.substring(MODULE.length())));
        }
        switch (name) {
            case "vessant.jdk":
                return String.valueOf(hasCompiler());
            case "vessant.bits":
                return bits();
            default:
                return "";
        }
    }

    /** The running VM's feature version, such as 8, 11 or 17. */
    private static int feature() {
        return featureOf(System.getProperty("java.specification.version", ""));
    }

    /** The number in "17" and the second one in "1.8"; NO_NUMBER for other texts. */
    private static int featureOf(String version) {
        String text = version.startsWith("1.") ? version.substring(2) : version;
        for (int i = 0; i < text.length(); i++) {
            if (text.charAt(i) < '0' || text.charAt(i) > '9') {
                return NO_NUMBER;
            }
        }
        try {
            return Integer.parseInt(text);
        } catch (NumberFormatException e) {
            return NO_NUMBER;
        }
    }

    /** A JDK has the compiler's program; up to Java 8 its "java.home" is the runtime inside it. */
    private static boolean hasCompiler() {
        File home = new File(System.getProperty("java.home", ""));
        File outer = "jre".equals(home.getName()) ? home.getParentFile() : null;
        return new File(home, "bin/javac").isFile()
                || (outer != null && new File(outer, "bin/javac").isFile());
    }

    private static String bits() {
        String model = System.getProperty("sun.arch.data.model", "");
        if (model.equals("64") || model.equals("32")) {
            return model;
        }
        String architecture = System.getProperty("os.arch", "");
        return architecture.contains("64") || architecture.equals("s390x") ? "64" : "32";
    }

    /**
     * Asks for what the runtime's image holds: that may be more than the VM has resolved for a
     * program on the class path. By reflection, since Java 8 has no such class.
     */
    private static boolean hasModule(String name) {
        if (feature() < FIRST_WITH_MODULES) {
            return partsOfJava8().contains(name);
        }
        try {
            Class<?> finders = Class.forName("java.lang.module.ModuleFinder");
            Object system = finders.getMethod("ofSystem").invoke(null);
            Object found = finders.getMethod("find", String.class).invoke(system, name);
            return (Boolean) found.getClass().getMethod("isPresent").invoke(found);
        } catch (ReflectiveOperationException e) {
            return false;
        }
    }

    /** The modules whose content every Java 8 runtime has, though it has no modules. */
    private static Set<String> partsOfJava8() {
        return new HashSet<>(
                Arrays.asList(
                        "java.base", "java.compiler", "java.datatransfer", "java.desktop",
                        "java.instrument", "java.logging", "java.management",
                        "java.management.rmi", "java.naming", "java.prefs", "java.rmi",
                        "java.scripting", "java.se", "java.security.jgss", "java.security.sasl",
                        "java.sql", "java.sql.rowset", "java.transaction.xa", "java.xml",
                        "java.xml.crypto", "jdk.charsets", "jdk.crypto.ec", "jdk.httpserver",
                        "jdk.localedata", "jdk.management", "jdk.naming.dns",
                        "jdk.security.auth", "jdk.security.jgss", "jdk.unsupported",
                        "jdk.xml.dom", "jdk.zipfs"));
    }
}
